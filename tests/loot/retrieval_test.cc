// Retrieval, client configuration and the new-player chest, through the endpoints.
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class RetrievalTest : public LootPluginTest {
 protected:
  std::string Refresh(const char* query = "") {
    const FakeHost::Reply reply = host_.Post("/tav-loot/v1/refresh" + std::string(query));
    return reply.status == 200 ? reply.body : reply.message;
  }
};

TEST_F(RetrievalTest, ForcedCallsWaitAndOthersAreThrottled) {
  StartPlugin();
  EXPECT_EQ(Refresh("?force=true"), R"("LOOT_DISABLED")");
  Enable();
  EXPECT_EQ(Refresh(), R"("REQUESTED_ASYNC")");
  EXPECT_EQ(Refresh(), R"("TOO_FREQUENT")");
  host_.AdvanceSeconds(2);
  EXPECT_EQ(Refresh(), R"("TOO_FREQUENT")");
  EXPECT_EQ(Refresh("?force=true"), R"("SUCCESS")");
  host_.AdvanceSeconds(1);
  EXPECT_EQ(Refresh(), R"("TOO_FREQUENT")") << "a forced call counts too";
  host_.AdvanceSeconds(2);
  EXPECT_EQ(Refresh(), R"("REQUESTED_ASYNC")");
  EXPECT_EQ(Retrievals(), 3u);
  retrievalError_ = "no such player";
  EXPECT_EQ(Refresh("?force=true"),
            "Error while calling getAllPlayerLootAndAllDefinitions: no such player");
  host_.AdvanceSeconds(3);
  Refresh();
  EXPECT_TRUE(host_.HasLine(
      "Loot::RetrievePlayerLootAndDefinitions service async returned error: no such player"));
}

TEST_F(RetrievalTest, ReadersRetrieveUntilOneSucceedsAndGetNoInvalidRecords) {
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
  playerLoot_ = R"([{"lootName":"NOBODY","count":1},{"lootName":"TOKEN_6","refId":"1x","count":1},
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

TEST_F(RetrievalTest, DefinitionsOfTheHeldVersionAreLeftAlone) {
  StartWithLoot(R"([{"lootName":"ODD","count":1}])");
  definitions_ = R"([{"lootName":"ODD","type":"ODDITY","displayCategories":"OTHER"}])";
  EXPECT_EQ(Refresh("?force=true"), R"("SUCCESS")");
  EXPECT_THAT(host_.ServiceCalls("loot", kRetrieve).back(), HasSubstr(R"("args":[7,8,9])"));
  EXPECT_THAT(Events(), IsEmpty()) << "nothing that is known has changed";
  itemsVersion_ = 6;
  EXPECT_EQ(Refresh("?force=true"), R"("SUCCESS")");
  EXPECT_THAT(host_.Published("/tav-loot/v1/player-display-categories"),
              ElementsAre(R"(["OTHER"])"));
}

TEST_F(RetrievalTest, TheConfigurationIsAnsweredFromWhatIsHeldAndPublishedWhenItDiffers) {
  std::string lists =
      R"({"lootItemsUsingBreakoutRecipeMenu":["a"],"lootMaterialsToAlwaysRender":["b"]})";
  host_.OnService("loot", "getClientConfiguration", [&](const std::string&) {
    return ServiceReply{lists, ""};
  });
  StartPlugin();
  const char* const kMenu = "/tav-loot/v1/recipes/configuration";
  const char* const kCurrencies = "/tav-loot/v1/currency-configuration";
  const char* const kHeld =
      R"({"enabled":true,"lootItemsUsingBreakoutRecipeMenu":["a"],"alwaysShowLootIds":["b"]})";
  EXPECT_EQ(host_.Get(kMenu).body, R"({"enabled":false,"lootItemsUsingBreakoutRecipeMenu":[],)"
                                   R"("alwaysShowLootIds":[]})");
  EXPECT_EQ(host_.Get(kMenu).body, kHeld);
  EXPECT_THAT(host_.Published(kMenu), ElementsAre(kHeld));
  EXPECT_THAT(host_.Published(kCurrencies), IsEmpty()) << "it was empty before";
  lists = R"({"currenciesUsingCapWallets":["c"]})";
  EXPECT_EQ(host_.Get(kCurrencies).body, R"({"currenciesUsingCapWallets":[]})");
  EXPECT_EQ(host_.Get(kCurrencies).body, R"({"currenciesUsingCapWallets":["c"]})");
  EXPECT_EQ(host_.Published(kMenu).size(), 2u);
}

TEST_F(LootPluginTest, TheNewPlayerChestIsAskedForOnceAtTheConfiguredLevel) {
  result_.payload = R"({"status":"OK","added":[{"lootName":"CHEST_plain","count":1}]})";
  StartPlugin();
  const auto checks = [&] {
    return host_.ServiceCalls("loot", "checkAndGrantNewPlayerChest").size();
  };
  const std::string done = "/tav-loot/v1/new-player-check-done/";
  const std::pair<const char*, const char*> kConditions[] = {{"Enabled", "true"},
                                                             {"PxhEnabled", "true"},
                                                             {"NewPlayerChestEnabled", "true"},
                                                             {"MinSummonerLevel", "10"}};
  for (const auto& [name, value] : kConditions) {
    EXPECT_EQ(host_.Post(done + "false").body, R"("NOT_DONE")") << "without " << name;
    Config(name, value);
  }
  const std::pair<const char*, size_t> kLevels[] = {{"9", 0}, {"10", 1}, {"11", 1}};
  for (const auto& [level, asked] : kLevels) {
    Set("/tav-summoner/v1/current-summoner", R"({"summonerLevel":)" + std::string(level) + "}");
    EXPECT_EQ(checks(), asked) << level;
  }
  EXPECT_EQ(Retrievals(), 1u) << "the chest was added";
  EXPECT_EQ(host_.Get("/tav-loot/v1/new-player-check-done").body, "true");
  for (const char* last : {"true", "false"}) {
    EXPECT_EQ(host_.Post(done + last).body, R"("NOT_DONE")") << "level 11";
  }
  Set("/tav-login/v1/login-data-packet",
      R"({"allSummonerData":{"summonerLevelAndPoints":{"summonerLevel":10}},"simpleMessages":[]})");
  EXPECT_EQ(checks(), 1u) << "the packet's level is no news";
  result_ = {"{}", "not today"};
  EXPECT_EQ(host_.Post(done + "false").body, R"("SUBMITTED")");
  EXPECT_EQ(checks(), 2u);
  EXPECT_TRUE(host_.HasLine(
      "Failed to get response for checkAndGrantNewPlayerChest, returned error: not today"));
  EXPECT_EQ(host_.Post(done + "maybe").status, 400);
}

TEST_F(LootPluginTest, ChangesScheduleARetrievalShortlyAfterTheLoginOnly) {
  StartPlugin();
  Enable();
  EXPECT_THAT(host_.Printed({Testing::Action::kPost}), IsEmpty()) << "nobody has logged in";
  Login(7);
  host_.AdvanceSeconds(29);
  Config("MinSummonerLevel", "10");
  EXPECT_THAT(host_.Printed({Testing::Action::kPost}),
              ElementsAre("post LootPlugin.RetrievePlayerLootAndDefinitions",
                          "post LootPlugin.RetrievePlayerLootAndDefinitions"));
  host_.AdvanceSeconds(1);
  Config("NewPlayerChestEnabled", "true");
  EXPECT_EQ(host_.Printed({Testing::Action::kPost}).size(), 2u);
}

}  // namespace
}  // namespace Kest::Client::Loot
