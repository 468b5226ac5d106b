// What is too large for the texts of trace_test.cc.
#include "base/platform.h"
#include "plugin/text_view.h"
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

// Longer than any formatted message.
TEST_F(LootPluginTest, PathsOfLongIdsAreComplete) {
  const std::string id(5000, 'x');
  definitions_ = R"([{"lootName":")" + id + R"(","type":"CHEST"}])";
  recipes_ = R"([{"recipeName":"R","slots":[{"slotNumber":1,"query":")" + id +
             R"(","quantityExpression":"1"}]}])";
  StartPlugin();
  Enable();
  const std::string item = "/tav-loot/v1/player-loot/" + id;
  const std::string menu = item + "/context-menu";
  const std::string recipes = "/tav-loot/v1/recipes/initial-item/" + id;
  for (const std::string& path : {std::string(kLootMap), menu, recipes}) host_.Get(path);
  for (const std::string& loot :
       {R"([{"lootName":")" + id + R"(","count":1}])", std::string("[]")}) {
    playerLoot_ = loot;
    recipes_.insert(2, R"("crafterName":"y",)");
    itemsVersion_ += 3;
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  std::map<std::string, int> published;
  for (const PublishedEvent& event : host_.PublishedEvents()) ++published[event.path];
  EXPECT_EQ(published[item], 2) << "created and deleted";
  EXPECT_TRUE(published[menu] > 0 && published[recipes] > 0);
}

TEST_F(LootPluginTest, AHostMayAskFromInsideAPublication) {
  StartPlugin();
  Enable();
  playerLoot_ = R"([{"lootName":"CHEST_plain","count":1}])";
  host_.Get(kLootMap);
  result_ = {R"({"status":"OK","added":[{"lootName":"CHEST_plain","count":1}]})"};
  host_.ForgetPublished();
  host_.OnNextPublish([this] {
    KestRequest request{};
    request.method = ToText("DELETE");
    request.url = ToText("/tav-loot/v1/player-loot/CHEST_plain/new-notification");
    const auto& block = host_.Block();
    block.api->release(block.context, block.api->request(block.context, &request));
  });
  host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  std::vector<std::string> maps;
  for (const PublishedEvent& event : host_.PublishedEvents()) {
    if (event.path == kLootMap) maps.push_back(event.json);
  }
  ASSERT_EQ(maps.size(), 2u);
  EXPECT_NE(maps[0].find(R"("isNew":true)"), std::string::npos) << "this one first, complete";
  EXPECT_EQ(maps[1], host_.Get(kLootMap).body) << "then what the host has changed";
}

#if !defined(_WIN32)  // a crash there waits for a debugger
TEST_F(LootPluginTest, ACraftWithoutAUniqueIdEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the plugin's tasks are threads here
  StartPlugin();
  Enable();
  const auto craft = [this] {
    SetUuidSource([](UuidBytes*) { return false; });
    host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  };
  EXPECT_DEATH(craft(), "ALE-8B4DC795");
}
#endif

// The service leaves out what the request says it holds, though it holds something newer by now.
TEST_F(LootPluginTest, RetrievalsThatCrossKeepWhatTheOtherBrought) {
  playerLoot_ = R"([{"lootName":"CHEST_plain","count":1}])";
  StartPlugin();
  Enable();
  host_.Get(kLootMap);
  bool isFirst = true;
  host_.OnService("loot", "getAllPlayerLootAndAllDefinitions", [&](const std::string& call) {
    EXPECT_NE(call.find("[7,8,9]"), std::string::npos);
    return ServiceReply{std::exchange(isFirst, false)
                            ? R"({"lootItemList":{"lastUpdate":17,"lootItems":)" + definitions_ +
                                  R"(},"recipeList":{"lastUpdate":8},"queryResult":{"lastUpdate":9},
                                  "playerLoot":)" +
                                  playerLoot_ + "}"
                            : R"({"lootItemList":{"lastUpdate":7},"recipeList":{"lastUpdate":8},
                                  "queryResult":{"lastUpdate":9},"playerLoot":)" +
                                  playerLoot_ + "}",
                        ""};
  });
  for (int i = 0; i < 2; ++i) host_.StartRequest("POST", "/tav-loot/v1/refresh?force=true");
  host_.RunUntilIdle();
  EXPECT_NE(host_.Get("/tav-loot/v1/loot-items").body, "[]");
  EXPECT_NE(host_.Get("/tav-loot/v1/player-loot").body, "[]");
}

}  // namespace
}  // namespace Kest::Client::Loot
