// The loot plugin on the fake host, with a small service: a test changes what the service holds and
// what it responds.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "binding/json/json_adapter.h"
#include "loot/loot_plugin.h"
#include "plugin/handshake.h"
#include "plugin/text_view.h"
#include "tests/support/fake_host.h"

namespace Kest::Client::Loot {

using Testing::FakeHost;
using Testing::PublishedEvent;
using Testing::ServiceReply;

// The first retrieval of a session brings these.
inline constexpr const char* kDefinitions = R"([
  {"lootName":"CHEST_plain","type":"CHEST","displayCategories":"CHEST","storeItemId":-1},
  {"lootName":"SHARD_11","type":"CHAMPION_RENTAL","displayCategories":"CHAMPION","storeItemId":11},
  {"lootName":"SKIN_11005","type":"SKIN","displayCategories":"SKIN","storeItemId":11005},
  {"lootName":"CURRENCY_champion","type":"CURRENCY","displayCategories":"","storeItemId":-1},
  {"lootName":"ODD","type":"ODDITY","displayCategories":"ODDS","storeItemId":-1},
  {"lootName":"TOKEN_6","type":"CHAMPION_TOKEN","displayCategories":"CHEST","storeItemId":0}])";

// Reads a response or event of this plugin. REQUIRES: the plugin is loaded.
template <class T>
T Parse(const std::string& json) {
  ConversionContext context;
  T value{};
  ReadJsonValue(context, "<value>", json, &value);
  EXPECT_TRUE(context.Ok()) << context.ErrorMessage() << " in " << json;
  return value;
}

class LootPluginTest : public ::testing::Test {
 protected:
  static constexpr const char* kLootMap = "/tav-loot/v2/player-loot-map";
  static constexpr const char* kRetrieve = "getAllPlayerLootAndAllDefinitions";

  LootPluginTest() {
    host_.OnService("loot", kRetrieve, [this](const std::string&) {
      retrieved_ = true;
      return ServiceReply{
          R"({"lootItemList":{"lastUpdate":)" + std::to_string(itemsVersion_) + R"(,"lootItems":)" +
              definitions_ + R"(},"recipeList":{"lastUpdate":)" +
              std::to_string(itemsVersion_ + 1) + R"(,"recipes":)" + recipes_ +
              R"(},"queryResult":{"lastUpdate":)" + std::to_string(itemsVersion_ + 2) +
              R"(,"queryToLootNames":)" + queries_ + R"(},"playerLoot":)" + playerLoot_ + "}",
          retrievalError_};
    });
    for (const char* method :
         {"craftPlayerLootWithRefId", "redeemPlayerLoot", "checkAndGrantNewPlayerChest"}) {
      host_.OnService("loot", method, [this](const std::string&) { return result_; });
    }
  }

  void StartPlugin() {
    constexpr PluginFactory kFactory = [](PluginRuntime& runtime) -> std::unique_ptr<PluginBase> {
      return std::make_unique<LootPlugin>(runtime, itemsInSlice_);
    };
    host_.Load(+[](KestHandshakeBlock* block) { Handshake(block, "tav-loot", kFactory); });
    ASSERT_TRUE(host_.Start());
  }
  void Config(const std::string& name, const std::string& json) {
    host_.SetResource("/tav-platform-config/v1/namespaces/LootConfig/" + name, json);
  }
  void Enable() {
    Config("Enabled", "true");
    Config("PxhEnabled", "true");
  }

  // A platform message of the one type that the plugin follows.
  void Push(const std::string& type, const std::string& bodyJson) {
    const std::string subtopic = "com.kestgames.platform.messaging.persistence.SimpleDialogMessage";
    host_.DeliverEvent("OnSvdsEvent_" + subtopic, R"({"subtopic":")" + subtopic +
                                                      R"(","typeName":")" + type + R"(","body":)" +
                                                      bodyJson + "}");
    host_.RunUntilIdle();
  }
  // For use on a module task, inside a publication too. The status of the response.
  int32_t AskInside(const char* method, const char* url, const char* body = "") {
    return Borrow(method, url, body)->status;
  }
  // For use on a module task. The response as the host gets it, until it is released.
  std::shared_ptr<const KestResponse> Borrow(const char* method, const char* url,
                                             const char* body = "") {
    KestRequest request{};
    request.method = ToText(method);
    request.url = ToText(url);
    request.contentType = ToText("application/json");
    request.body = ToBytes(body);
    const auto& block = host_.Block();
    return {block.api->request(block.context, &request), [&block](const KestResponse* response) {
              block.api->release(block.context, response);
            }};
  }
  void RespondToGet(const std::string& path, const std::string& json, bool held = false) {
    host_.OnRequest("GET", path, {200, json, "", "application/json", held});
  }

  FakeHost host_;
  static inline size_t itemsInSlice_ = kItemsInSlice;  // of the plugin that is started next
  std::string definitions_ = kDefinitions;
  std::string recipes_ = "[]";
  std::string queries_ = "{}";
  std::string playerLoot_ = "[]";
  int64_t itemsVersion_ = 7;  // the recipes' and the query results' are one and two more
  std::string retrievalError_;
  bool retrieved_ = false;
  ServiceReply result_{R"({"status":"OK"})", ""};  // of craft, redeem and the new-player chest
};

}  // namespace Kest::Client::Loot
