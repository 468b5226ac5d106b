// What is too large for the texts of trace_test.cc.
#include <thread>

#include "base/platform.h"
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
  host_.OnNextPublish(
      [this] { AskInside("DELETE", "/tav-loot/v1/player-loot/CHEST_plain/new-notification"); });
  host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  std::vector<std::string> maps;
  for (const PublishedEvent& event : host_.PublishedEvents()) {
    if (event.path == kLootMap) maps.push_back(event.json);
  }
  ASSERT_EQ(maps.size(), 2u);
  EXPECT_NE(maps[0].find(R"("isNew":true)"), std::string::npos) << "this one first, complete";
  EXPECT_EQ(maps[1], host_.Get(kLootMap).body) << "then what the host has changed";
}

// The response to the request from inside arrives after the one that is being published.
TEST_F(LootPluginTest, WhatAHostAsksFromInsideAPublicationMayWait) {
  StartPlugin();
  Enable();
  host_.Get(kLootMap);
  host_.OnService("loot", "getClientConfiguration", [](const std::string&) {
    return ServiceReply{R"({"currenciesUsingCapWallets":["CURRENCY_champion"]})", ""};
  });
  int32_t crafted = 0;
  host_.OnNextPublish([&] {
    crafted = AskInside("POST", "/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  });
  host_.Get("/tav-loot/v1/currency-configuration");
  EXPECT_EQ(crafted, 200);

  // What is published from inside the publication of "true" is the last word.
  Config("PxhEnabled", "false");
  host_.OnService("loot", kRetrieve, [](const std::string&) {
    return ServiceReply{"{}", "", /*held=*/true};
  });
  host_.OnNextPublish([&] { AskInside("POST", "/tav-loot/v1/refresh?force=true"); });
  Config("PxhEnabled", "true");
  Config("PxhEnabled", "false");
  host_.ReleaseHeld();
  Config("PxhEnabled", "false");
  EXPECT_EQ(host_.PublishedEvents().back().json, host_.Get("/tav-loot/v1/enabled").body);
}

TEST_F(LootPluginTest, AResponseStaysAsItIsUntilItIsReleasedOnAnyThread) {
  StartPlugin();
  Enable();
  playerLoot_ = R"([{"lootName":"CHEST_plain","count":1}])";
  const std::string first = host_.Get(kLootMap).body;
  std::vector<std::shared_ptr<const KestResponse>> held(2);
  std::vector<std::string> maps;
  for (auto& response : held) {
    host_.RunTask([&] { response = Borrow("GET", kLootMap); });
    maps.emplace_back(ToView(response->body));
    playerLoot_ = R"([{"lootName":"CHEST_plain","count":2}])";
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  EXPECT_EQ(maps, (std::vector<std::string>{first, host_.Get(kLootMap).body}));
  EXPECT_NE(maps[0], maps[1]);
  std::thread([&] {
    EXPECT_EQ(ToView(held[0]->body), maps[0]);
    held[0].reset();
  }).join();
  playerLoot_ = "[]";
  host_.Post("/tav-loot/v1/refresh?force=true");
  host_.Stop();
  EXPECT_EQ(ToView(held[1]->body), maps[1]);
}

// While a host waits in its publish, the next messages and phases have their turn.
TEST_F(LootPluginTest, GrantsThatComeWhileGrantsArePublishedKeepTheirIdsAndTheirQueue) {
  StartPlugin();
  Enable();
  host_.OnService("loot", kRetrieve, [](const std::string&) {
    return ServiceReply{"{}", "", /*held=*/true};
  });
  const auto waitInNextPublish = [this] {
    host_.OnNextPublish([this] { AskInside("POST", "/tav-loot/v1/refresh?force=true"); });
  };
  const auto grant = [this] { Push("championMasteryLootGrant", R"({"gameId":1,"lootName":"a"})"); };
  const auto enter = [this](const char* phase) {
    host_.SetResource("/tav-gameflow/v1/session", R"({"phase":")" + std::string(phase) + "\"}");
  };
  const auto expectShown = [this](std::vector<int64_t> ids) {
    const std::string json = host_.Get("/tav-loot/v1/loot-grants").body;
    std::vector<int64_t> shown;
    for (const auto& each : Parse<std::vector<Api::LootGrantNotification>>(json)) {
      shown.push_back(each.id);
    }
    EXPECT_EQ(shown, ids);
    EXPECT_EQ(host_.PublishedEvents().back().json, json);
  };
  waitInNextPublish();
  grant();
  grant();
  host_.ReleaseHeld();
  expectShown({0, 1});
  enter("InProgress");
  grant();
  waitInNextPublish();
  enter("Lobby");
  enter("InProgress");
  grant();
  host_.ReleaseHeld();
  grant();
  expectShown({0, 1, 2});
  enter("Lobby");
  expectShown({0, 1, 2, 3, 4});
  const auto dismiss = [this] { AskInside("DELETE", "/tav-loot/v1/loot-grants/0"); };
  host_.OnNextPublish(dismiss);  // again, from inside
  host_.RunTask(dismiss);
  enter("InProgress");
  enter("Lobby");
  expectShown({1, 2, 3, 4});
}

#if !defined(_WIN32)  // a crash there waits for a debugger
TEST_F(LootPluginTest, ACraftWithoutAUniqueIdEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the plugin's tasks are threads here
  StartPlugin();
  Enable();
  const auto craft = [this] {
    host_.RefuseUuids();
    host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  };
  EXPECT_DEATH(craft(), "ALE-8B4DC795");
}
#endif

// The service leaves out what the request says it holds, though it holds something newer by now.
TEST_F(LootPluginTest, AListThatTheServiceLeavesOutStays) {
  playerLoot_ = R"([{"lootName":"CHEST_plain","count":1}])";
  StartPlugin();
  Enable();
  host_.Get(kLootMap);
  // All of one response, then nothing of the version sent, and of the version held by then.
  std::vector<std::string> lists = {R"("lastUpdate":17)", R"("lastUpdate":7)",
                                    R"("lastUpdate":17,"lootItems":)" + definitions_};
  host_.OnService("loot", kRetrieve, [&](const std::string& call) {
    EXPECT_NE(call.find("[7,8,9]"), std::string::npos);
    const std::string list = lists.back();
    lists.pop_back();
    return ServiceReply{R"({"lootItemList":{)" + list + R"(},"recipeList":{"lastUpdate":8},)" +
                            R"("queryResult":{"lastUpdate":9},"playerLoot":)" + playerLoot_ + "}",
                        ""};
  });
  for (int i = 0; i < 3; ++i) host_.StartRequest("POST", "/tav-loot/v1/refresh?force=true");
  host_.RunUntilIdle();
  EXPECT_NE(host_.Get("/tav-loot/v1/loot-items").body, "[]") << "retrievals that crossed";
  EXPECT_NE(host_.Get("/tav-loot/v1/player-loot").body, "[]");
  host_.OnService("loot", kRetrieve, [&](const std::string&) {
    return ServiceReply{R"({"lootItemList":null,"playerLoot":)" + playerLoot_ + "}", ""};
  });
  EXPECT_EQ(host_.Post("/tav-loot/v1/refresh?force=true").status, 200);
  EXPECT_NE(host_.Get("/tav-loot/v1/loot-items").body, "[]") << "not in the response at all";
  EXPECT_NE(host_.Get("/tav-loot/v1/player-loot").body, "[]");
}

}  // namespace
}  // namespace Kest::Client::Loot
