// What is too large for the texts of trace_test.cc.
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
