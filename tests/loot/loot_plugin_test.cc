// The whole plugin: configuration, readiness, login and publication.
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;

TEST_F(LootPluginTest, EnabledKeepsItsValueWhenTheSettingsAreUnreadableOrGone) {
  StartPlugin();
  Enable();
  Config("Enabled", R"("perhaps")");
  Remove("/tav-platform-config/v1/namespaces/LootConfig/Enabled");
  EXPECT_EQ(host_.Get("/tav-loot/v1/enabled").body, "true");
  Config("Enabled", "false");
  EXPECT_EQ(host_.CountLines("Loot enabled") + host_.CountLines("Loot disabled"), 2u);
}

constexpr const char* kChampionsPath = "/tav-champions/v1/inventories/7/champions-minimal";
constexpr const char* kChampions = R"([{"id":11,"ownership":{"owned":true}}])";
constexpr const char* kSkinsPath = "/tav-champions/v1/inventories/7/skins-minimal";
constexpr const char* kSkins = R"([{"id":11000,"championId":11,"name":"Base","tilePath":"t"},
  {"id":11005,"championId":11,"name":"Fifth","ownership":{"owned":true}}])";

// Path and value of the four sources of one summoner, in the order they are followed.
std::vector<std::pair<std::string, std::string>> SourcesOf(const std::string& summoner) {
  const std::string collections = "/tav-collections/v1/inventories/" + summoner;
  return {{"/tav-champions/v1/inventories/" + summoner + "/champions-minimal", kChampions},
          {collections + "/ward-skins", "[]"},
          {collections + "/summoner-icons", R"({"icons":[1]})"},
          {"/tav-inventory/v1/inventory/emotes", "[]"}};
}

TEST_F(LootPluginTest, ReadyTurnsWithTheGoalAndSourcesEnrichTheStoredItems) {
  const std::string ready = "/tav-loot/v1/ready";
  const std::string assets = "/tav-game-data/assets/v1/";
  AnswerGet(assets + "profile-icons.json", R"([{"id":5,"iconPath":"five.png"}])");
  AnswerGet(assets + "loot.json", R"({"LootItems":[{"id":"ICON","name":"Named"}]})");
  AnswerGet(assets + "summoner-emotes.json", R"([{"id":6,"name":"Wave"}])");
  AnswerGet(kSkinsPath, kSkins);
  definitions_ = R"([{"lootName":"ICON","type":"SUMMONERICON","storeItemId":5},
                     {"lootName":"WAVE","type":"EMOTE","storeItemId":6},
                     {"lootName":"SKIN_11005","type":"SKIN","storeItemId":11005}])";
  StartWithLoot(R"([{"lootName":"ICON","count":1},{"lootName":"WAVE","count":1},
                    {"lootName":"SKIN_11005","count":1}])");
  EXPECT_EQ(Item("ICON").tilePath + Item("ICON").localizedName, "five.pngNamed");
  EXPECT_EQ(Item("WAVE").itemDesc, "Wave");
  Login(7);
  Set(kChampionsPath, kChampions);
  EXPECT_EQ(Item("SKIN_11005").redeemableStatus, Api::RedeemableStatus::kAlreadyOwned);
  EXPECT_EQ(Item("SKIN_11005").itemDesc, "Fifth");
  EXPECT_THAT(Events(), ElementsAre("Update /tav-loot/v1/player-loot/SKIN_11005",
                                    "Update /tav-loot/v1/player-loot-map",
                                    "Update /tav-loot/v2/player-loot-map"));
  Config("InitializationGoalFlags", "3");
  EXPECT_TRUE(host_.HasLine("Loot ready: 3/3"));
  for (const char* goal : {"300", "63", "1", "65"}) Config("InitializationGoalFlags", goal);
  EXPECT_THAT(host_.Published(ready), ElementsAre("true", "false", "true", "false"))
      << "300 is no eight-bit number: dropped; 65 has a bit without a source";
}

TEST_F(LootPluginTest, LoadsFailAloneAndSkinsThatAreRefusedOrComeTooLateSetNoBit) {
  AnswerGet("/tav-game-data/assets/v1/summoner-emotes.json", "[]");
  StartPlugin();
  EXPECT_TRUE(host_.HasLine(
      "Failed to retrieve /tav-game-data/assets/v1/profile-icons.json with error Error response"));
  EXPECT_TRUE(host_.HasLine("Unable to load loot localization data."));
  EXPECT_FALSE(host_.HasLine("summoner-emotes.json")) << "each load fails alone";
  Login(7);
  Set(kChampionsPath, kChampions);
  EXPECT_TRUE(host_.HasLine("Failed to retrieve " + std::string(kSkinsPath)));
  EXPECT_TRUE(host_.HasLine("Loot not yet ready: 1/63")) << "the champions have answered";
  AnswerGet(kSkinsPath, kSkins, /*held=*/true);
  Set(kChampionsPath, kChampions);
  Logout();
  host_.ReleaseHeld();
  host_.RunUntilIdle();
  EXPECT_EQ(host_.CountLines("Loot not yet ready"), 1u);
}

TEST_F(LootPluginTest, TheSourcesAreFollowedOncePerConnectedPeriod) {
  StartPlugin();
  const auto log = [&] {
    return host_.Printed({Testing::Action::kSubscribe, Testing::Action::kUnsubscribe});
  };
  std::vector<std::string> expected = log();
  const auto session = [&](const std::string& state, const char* ids) {
    Set("/tav-login/v1/session", R"({"state":")" + state + R"(","summonerId":)" + ids + "}");
  };
  session("SUCCEEDED", R"(7,"accountId":0)");
  session("IN_PROGRESS", R"(7,"accountId":1)");
  EXPECT_EQ(log(), expected) << "not connected";
  for (const char* state : {"SUCCEEDED", "SUCCEEDED", "LOGGING_OUT"}) {
    session(state, R"(7,"accountId":1)");
  }
  session("SUCCEEDED", R"(8,"accountId":1)");
  Logout();
  Logout();
  for (const char* summoner : {"7", "8"}) {
    for (const char* sign : {"subscribe ", "unsubscribe "}) {
      for (const auto& [path, json] : SourcesOf(summoner)) {
        expected.push_back(sign + std::string("OnJsonApiEvent_") + path);
      }
    }
  }
  EXPECT_EQ(log(), expected);
}

}  // namespace
}  // namespace Kest::Client::Loot
