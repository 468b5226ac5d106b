// The values that the whole plugin returns; what it does and in which order is in trace_test.cc.
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;

TEST_F(LootPluginTest, SourcesAndGameDataEnrichTheStoredItems) {
  const std::string assets = "/tav-game-data/assets/v1/";
  RespondToGet(assets + "profile-icons.json", R"([{"id":5,"iconPath":"five.png"}])");
  RespondToGet(assets + "loot.json", R"({"LootItems":[{"id":"ICON","name":"Named"}]})");
  RespondToGet(assets + "summoner-emotes.json", R"([{"id":6,"name":"Wave"}])");
  RespondToGet("/tav-champions/v1/inventories/7/skins-minimal",
               R"([{"id":11000,"championId":11,"name":"Base","tilePath":"t"},
                {"id":11005,"championId":11,"name":"Fifth","ownership":{"owned":true}}])");
  definitions_ = R"([{"lootName":"ICON","type":"SUMMONERICON","storeItemId":5},
                     {"lootName":"WAVE","type":"EMOTE","storeItemId":6},
                     {"lootName":"SKIN_11005","type":"SKIN","storeItemId":11005}])";
  StartWithLoot(R"([{"lootName":"ICON","count":1},{"lootName":"WAVE","count":1},
                    {"lootName":"SKIN_11005","count":1}])");
  EXPECT_EQ(Item("ICON").tilePath + Item("ICON").localizedName, "five.pngNamed");
  EXPECT_EQ(Item("WAVE").itemDesc, "Wave");
  Login(7);
  Set("/tav-champions/v1/inventories/7/champions-minimal",
      R"([{"id":11,"ownership":{"owned":true}}])");
  EXPECT_EQ(Item("SKIN_11005").redeemableStatus, Api::RedeemableStatus::kAlreadyOwned);
  EXPECT_EQ(Item("SKIN_11005").itemDesc, "Fifth");
}

TEST_F(LootPluginTest, ReadersRetrieveUntilOneSucceedsAndGetNoInvalidRecords) {
  StartPlugin();
  EXPECT_EQ(host_.Get(kLootMap).body, R"({"version":0,"playerLoot":{}})") << "disabled";
  Enable();
  retrievalError_ = "down";
  for (const char* read : {"v1/player-loot", "v1/player-loot-map", "v2/player-loot-map",
                           "v1/player-loot/x", "v1/loot-items", "v1/player-display-categories"}) {
    EXPECT_EQ(host_.Get(std::string("/tav-loot/") + read).status, 500) << read;
  }
  EXPECT_EQ(Retrievals(), 6u);
  retrievalError_.clear();
  playerLoot_ = R"([{"lootName":"UNKNOWN","count":1},{"lootName":"TOKEN_6","refId":"1x","count":1},
                    {"lootName":"TOKEN_6","refId":"12","count":3}])";
  std::vector<std::shared_ptr<const FakeHost::Reply>> replies;
  for (int i = 0; i < 6; ++i) replies.push_back(host_.StartRequest("GET", kLootMap));
  host_.RunUntilIdle();
  for (const auto& reply : replies) {
    EXPECT_EQ(Parse<Api::PlayerLootMap>(reply->body).playerLoot.size(), 1u);
  }
  EXPECT_EQ(host_.CountLines("is not valid - ignoring"), 12u);
  EXPECT_EQ(host_.Published("/tav-loot/v1/player-loot/TOKEN_6-12").size(), 1u);
  const size_t retrievals = Retrievals();
  EXPECT_EQ(host_.Get("/tav-loot/v1/player-display-categories").body,
            R"(["","ODDS","CHEST","CHAMPION","SKIN"])");
  EXPECT_EQ(Parse<std::vector<Api::LootItem>>(host_.Get("/tav-loot/v1/loot-items").body).size(),
            6u);
  EXPECT_EQ(Retrievals(), retrievals) << "nothing is pending any more";
}

TEST_F(LootPluginTest, AppliesDeltasAndReturnsTheItemsAsStored) {
  StartWithLoot(R"([{"lootName":"CHEST_plain","count":1},{"lootName":"ODD","count":5}])");
  result_.payload = R"({"status":"OK",
    "added":[{"lootName":"CURRENCY_champion","count":90},{"lootName":"UNKNOWN","count":1},
             {"lootName":"SHARD_11","count":1},{"lootName":"ODD","count":2147483647},
             {"lootName":"SKIN_11005","count":0}],
    "removed":[{"lootName":"CHEST_plain","count":1},{"lootName":"SHARD_11","count":1}]})";
  const auto update =
      Parse<Api::PlayerLootUpdate>(host_.Post("/tav-loot/v1/recipes/SOME_recipe/craft", "[]").body);
  std::vector<std::string> added;
  for (const auto& delta : update.added) {
    added.push_back(delta.playerLoot.lootId + " " + std::to_string(delta.deltaCount) + " -> " +
                    std::to_string(delta.playerLoot.count) + " " + delta.playerLoot.type);
  }
  EXPECT_THAT(added, ElementsAre("UNKNOWN 1 -> 1 ", "ODD 2147483647 -> 2147483647 ODDITY",
                                 "SKIN_11005 0 -> 0 SKIN", "SHARD_11 1 -> 1 CHAMPION_RENTAL",
                                 "CURRENCY_champion 90 -> 90 CURRENCY"));
  EXPECT_TRUE(host_.HasLine("Loot count out of range: ODD"));
  ASSERT_EQ(update.removed.size(), 2u);
  EXPECT_EQ(update.removed[0].playerLoot.type + std::to_string(update.removed[0].playerLoot.count),
            "CHEST0");
  EXPECT_EQ(Item("CHEST_plain").count, -1) << "it left the store";
  EXPECT_EQ(Item("SKIN_11005").count, -1) << "returned, but never stored";
  EXPECT_EQ(Item("SHARD_11").count, -1) << "removed after it was added";
  EXPECT_TRUE(Item("CURRENCY_champion").isNew);
}

TEST_F(LootPluginTest, RedeemedItemsBecomeOwnedOrRented) {
  StartWithLoot(R"([{"lootName":"SHARD_11","count":2},{"lootName":"SKIN_11005","count":1}])");
  result_.payload = R"({"status":"OK","redeemed":["SHARD_11","SKIN_11005","UNKNOWN"]})";
  const auto update =
      Parse<Api::PlayerLootUpdate>(host_.Post("/tav-loot/v1/player-loot/SHARD_11/redeem").body);
  ASSERT_EQ(update.redeemed.size(), 3u);
  using Status = Api::RedeemableStatus;
  const Status kMarks[] = {Status::kAlreadyRented, Status::kAlreadyOwned, Status::kUnknown};
  for (size_t i = 0; i < 3; ++i) {
    const Api::PlayerLoot& item = update.redeemed[i].playerLoot;
    EXPECT_EQ(update.redeemed[i].deltaCount, 0);
    EXPECT_EQ(item.redeemableStatus, kMarks[i]) << item.lootName;
    EXPECT_TRUE(i == 2 || Item(item.lootId) == item) << item.lootName << " is stored alike";
  }
}

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
  for (const std::string& path : {menu, recipes, std::string(kLootMap)}) host_.Get(path);
  for (const std::string& loot :
       {R"([{"lootName":")" + id + R"(","count":1}])", std::string("[]")}) {
    playerLoot_ = loot;
    host_.Post("/tav-loot/v1/refresh?force=true");
  }
  EXPECT_EQ(host_.Published(item).size(), 2u) << "created and deleted";
  EXPECT_FALSE(host_.Published(menu).empty() || host_.Published(recipes).empty());
}

}  // namespace
}  // namespace Kest::Client::Loot
