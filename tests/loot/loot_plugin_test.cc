// The whole plugin: configuration, readiness, login and publication.
#include "tests/loot/loot_plugin_fixture.h"

#include <algorithm>
#include <random>

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LootPluginTest, EnabledTakesBothValuesAndIsPublishedWhenItTurns) {
  StartPlugin();
  const char* const kEnabled = "/tav-loot/v1/enabled";
  Config("Enabled", "true");
  EXPECT_THAT(host_.Published(kEnabled), IsEmpty());
  Config("PxhEnabled", "true");
  Config("PxhEnabled", "true");
  Config("Enabled", R"("perhaps")");  // unreadable: dropped
  host_.RemoveResource("/tav-platform-config/v1/namespaces/LootConfig/Enabled");
  host_.RunUntilIdle();
  EXPECT_EQ(host_.Get(kEnabled).body, "true");
  Config("Enabled", "false");
  EXPECT_THAT(host_.Published(kEnabled), ElementsAre("true", "false"));
  EXPECT_EQ(host_.CountLines("Loot enabled"), 1u);
  EXPECT_EQ(host_.CountLines("Loot disabled"), 1u);
}

struct Source {
  std::string path;
  std::string json;
  uint8_t bits;
};

std::vector<Source> SourcesOf(const std::string& summoner) {
  const std::string collections = "/tav-collections/v1/inventories/" + summoner;
  return {{"/tav-champions/v1/inventories/" + summoner + "/champions-minimal",
           R"([{"id":11,"ownership":{"owned":true}}])", kReadyChampions | kReadySkins},
          {collections + "/ward-skins", "[]", kReadyWardSkins},
          {collections + "/summoner-icons", R"({"icons":[1]})", kReadySummonerIcons},
          {"/tav-inventory/v1/inventory/emotes", "[]", kReadyEmotes}};
}

constexpr const char* kSkins = R"([{"id":11000,"championId":11,"name":"Base","tilePath":"t"},
  {"id":11005,"championId":11,"name":"Fifth","ownership":{"owned":true}}])";

TEST_F(LootPluginTest, ReadyTurnsOnceWhateverOrderTheSourcesAnswerIn) {
  const std::string ready = "/tav-loot/v1/ready";
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal", kSkins);
  StartPlugin();
  Config("InitializationGoalFlags", "47");  // all but the tournament logos
  Login(7);
  std::vector<Source> sources = SourcesOf("7");
  std::mt19937 random(301);
  std::shuffle(sources.begin(), sources.end(), random);
  for (const Source& source : sources) {
    EXPECT_EQ(host_.Get(ready).body, "false");
    Set(source.path, source.json);
  }
  for (const Source& source : sources) Set(source.path, source.json);
  EXPECT_THAT(host_.Published(ready), ElementsAre("true"));
  EXPECT_TRUE(host_.HasLine("Loot ready: 47/47"));
  Config("InitializationGoalFlags", "300");  // no eight-bit number: dropped
  Config("InitializationGoalFlags", "63");
  Config("InitializationGoalFlags", "1");
  host_.Logout();
  host_.RunUntilIdle();
  EXPECT_THAT(host_.Published(ready), ElementsAre("true", "false", "true"));
}

TEST_F(LootPluginTest, ChampionsWithoutTheirSkinsSetTheirOwnBitOnly) {
  StartPlugin();
  Login(7);
  Set(SourcesOf("7")[0].path, SourcesOf("7")[0].json);
  EXPECT_TRUE(host_.HasLine("Loot not yet ready: 1/63"));
  EXPECT_TRUE(host_.HasLine("Failed to retrieve /tav-champions/v1/inventories/7/skins-minimal"));
}

TEST_F(LootPluginTest, SourcesEnrichTheStoredItems) {
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal", kSkins);
  StartWithLoot(R"([{"lootName":"SKIN_11005","count":1},{"lootName":"ODD","count":1}])");
  Login(7);
  Set(SourcesOf("7")[0].path, SourcesOf("7")[0].json);
  EXPECT_EQ(Item("SKIN_11005").redeemableStatus, Api::RedeemableStatus::kAlreadyOwned);
  EXPECT_EQ(Item("SKIN_11005").itemDesc, "Fifth");
  EXPECT_THAT(Events(), ElementsAre("Update /tav-loot/v1/player-loot/SKIN_11005",
                                    "Update /tav-loot/v1/player-loot-map",
                                    "Update /tav-loot/v2/player-loot-map"));
}

TEST_F(LootPluginTest, SkinsThatComeAfterTheLogoutAreDropped) {
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal", kSkins, /*held=*/true);
  StartPlugin();
  Login(7);
  Set(SourcesOf("7")[0].path, SourcesOf("7")[0].json);
  host_.Logout();
  host_.RunUntilIdle();
  host_.ReleaseHeld();
  host_.RunUntilIdle();
  EXPECT_FALSE(host_.HasLine("Loot not yet ready"));
}

TEST_F(LootPluginTest, TheSourcesAreFollowedOncePerConnectedPeriod) {
  StartPlugin();
  const size_t before = host_.SubscriptionLog().size();
  const auto session = [&](const char* state, const char* summoner, const char* account) {
    Set("/tav-login/v1/session", R"({"state":")" + std::string(state) + R"(","summonerId":)" +
                                     summoner + R"(,"accountId":)" + account + "}");
  };
  session("SUCCEEDED", "7", "0");
  session("IN_PROGRESS", "7", "1");
  EXPECT_EQ(host_.SubscriptionLog().size(), before) << "not connected";
  session("SUCCEEDED", "7", "1");
  session("SUCCEEDED", "7", "1");
  session("LOGGING_OUT", "7", "1");
  session("SUCCEEDED", "8", "1");
  host_.Logout();
  host_.RunUntilIdle();
  host_.Logout();
  host_.RunUntilIdle();
  std::vector<std::string> expected;
  for (const char* summoner : {"7", "8"}) {
    for (const char* sign : {"+", "-"}) {
      for (const Source& source : SourcesOf(summoner)) {
        expected.push_back(sign + std::string("OnJsonApiEvent_") + source.path);
      }
    }
  }
  std::vector<std::string> log = host_.SubscriptionLog();
  log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(before));
  EXPECT_EQ(log, expected);
}

TEST_F(LootPluginTest, GamePhasesHoldGrantNotificationsBack) {
  StartPlugin();
  const std::vector<std::string> inGame = {"ReadyCheck",      "ChampSelect", "GameStart",
                                           "FailedToLaunch",  "InProgress",  "Reconnect",
                                           "WaitingForStats", "PreEndOfGame"};
  for (const std::string& phase : inGame) {
    Set("/tav-gameflow/v1/session", R"({"phase":")" + phase + R"("})");
  }
  EXPECT_EQ(host_.CountLines("set to: disallowed. notifications will queue"), inGame.size());
  for (const char* phase : {"None", "Lobby", "EndOfGame"}) {
    Set("/tav-gameflow/v1/session", R"({"phase":")" + std::string(phase) + R"("})");
  }
  host_.RemoveResource("/tav-gameflow/v1/session");
  host_.RunUntilIdle();
  EXPECT_EQ(host_.CountLines("loot grant notifications set to: allowed."), 4u);
}

TEST_F(LootPluginTest, EachGameDataLoadFailsAlone) {
  AnswerGet("/tav-game-data/assets/v1/summoner-emotes.json", "[]");
  StartPlugin();
  EXPECT_TRUE(host_.HasLine(
      "Failed to retrieve /tav-game-data/assets/v1/profile-icons.json with error Error response"));
  EXPECT_TRUE(host_.HasLine("Unable to load loot localization data."));
  EXPECT_FALSE(host_.HasLine("summoner-emotes.json"));
}

TEST_F(LootPluginTest, EndpointsThatAreNotServedSaySo) {
  StartPlugin();
  const std::pair<const char*, const char*> kEndpoints[] = {
      {"GET", "recipes/initial-item/x"},
      {"POST", "recipes/initial-item/x"},
      {"GET", "loot-grants"},
      {"DELETE", "loot-grants/1"},
      {"GET", "player-loot/x/context-menu"},
      {"POST", "player-loot/x/context-menu"},
      {"GET", "player-loot-notifications"},
      {"POST", "player-loot-notifications/x/acknowledge"}};
  for (const auto& [method, path] : kEndpoints) {
    const FakeHost::Reply reply = host_.Request(method, std::string("/tav-loot/v1/") + path);
    EXPECT_EQ(reply.status, 501) << path;
    EXPECT_EQ(reply.message, "Not Implemented") << path;
  }
  EXPECT_EQ(host_.Delete("/tav-loot/v1/loot-grants/first").status, 400);
}

// The main job: a chest is opened, its marks are seen, and a follower of the events knows at each
// step what the endpoints answer.
TEST_F(LootPluginTest, WhatIsPublishedAddsUpToWhatIsAnswered) {
  playerLoot_ = R"([{"lootName":"CHEST_plain","count":2},{"lootName":"ODD","count":1}])";
  StartPlugin();
  Enable();
  Login(7);
  Api::PlayerLootItems known;
  size_t seen = 0;
  int64_t version = 0;
  const auto follow = [&](const char* step, bool changes) {
    SCOPED_TRACE(step);
    host_.RunUntilIdle();
    const std::vector<PublishedEvent> events = host_.PublishedEvents();
    const std::string item = "/tav-loot/v1/player-loot/";
    for (; seen < events.size(); ++seen) {
      const PublishedEvent& event = events[seen];
      if (event.path.rfind(item, 0) != 0) continue;
      const std::string lootId = event.path.substr(item.size());
      EXPECT_EQ(event.type == "Create", !known.contains(lootId)) << lootId;
      if (event.type == "Delete") {
        known.erase(lootId);
      } else {
        known[lootId] = std::make_shared<const Api::PlayerLoot>(Parse<Api::PlayerLoot>(event.json));
      }
    }
    version += changes ? 1 : 0;
    const auto answered = Parse<Api::PlayerLootMap>(host_.Get(kLootMap).body);
    EXPECT_EQ(answered, (Api::PlayerLootMap{version, known}));
  };
  host_.Get(kLootMap);
  follow("first read", true);
  host_.Post("/tav-loot/v1/refresh?force=true");
  follow("the same inventory again", false);
  result_.payload = R"({"status":"OK","added":[{"lootName":"SHARD_11","count":1}],
                        "removed":[{"lootName":"CHEST_plain","count":1}]})";
  EXPECT_EQ(host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])").status, 200);
  follow("a chest opened", true);
  EXPECT_EQ(host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])").status, 200);
  follow("the last chest opened", true);
  EXPECT_FALSE(known.contains("CHEST_plain"));
  EXPECT_EQ(host_.Delete("/tav-loot/v1/player-loot/SHARD_11/new-notification").status, 204);
  follow("the shard seen", true);
  EXPECT_EQ(host_.Delete("/tav-loot/v1/player-loot/SHARD_11/new-notification").status, 204);
  EXPECT_EQ(host_.Delete("/tav-loot/v1/player-loot/NOBODY/new-notification").status, 204);
  follow("seen already", false);
  result_.payload = R"({"status":"OK","redeemed":["SHARD_11"]})";
  EXPECT_EQ(host_.Post("/tav-loot/v1/player-loot/SHARD_11/redeem").status, 200);
  follow("the shard redeemed", true);
  host_.Logout();
  follow("logged out", false);
  EXPECT_EQ(host_.Get("/tav-loot/v1/player-loot/CHEST_plain").message, "Not found");
}

}  // namespace
}  // namespace Kest::Client::Loot
