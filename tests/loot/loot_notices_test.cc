// Chest notifications, loot grants, and the platform messages that bring grants.
#include "tests/loot/loot_plugin_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kGrantType = "championMasteryLootGrant";
constexpr const char* kGrants = "/tav-loot/v1/loot-grants";
constexpr const char* kNotifications = "/tav-loot/v1/player-loot-notifications";

class LootNoticesTest : public LootPluginTest {
 protected:
  LootNoticesTest() {
    host_.OnService("clientFacadeService", "callPersistenceMessaging", [this](auto& call) {
      const bool refused = call.find(refusedMessage_) != std::string::npos;
      return ServiceReply{"", refused ? "no such message" : ""};
    });
  }
  std::vector<std::string> Acknowledgements() const {
    return host_.ServiceCalls("clientFacadeService", "callPersistenceMessaging");
  }
  // "id:championId" of each grant that is shown.
  std::string Shown() {
    std::string shown;
    for (const auto& grant :
         Parse<std::vector<Api::LootGrantNotification>>(host_.Get(kGrants).body)) {
      shown += std::to_string(grant.id) + ":" + std::to_string(grant.championId) + " ";
    }
    return shown;
  }
  FakeHost::Reply Dismiss(const char* id) {
    return host_.Request("DELETE", std::string(kGrants) + "/" + id);
  }
  static std::string Grant(int champion, const std::string& more = R"("msgId":"m")") {
    return R"({"gameId":1,"lootName":"a","accountId":5,"championId":)" + std::to_string(champion) +
           "," + more + "}";
  }

  std::string refusedMessage_ = "none";
};

TEST_F(LootNoticesTest, OnlyWellFormedMasteryMessagesBecomeGrants) {
  StartPlugin();
  const std::string malformed = "2 Malformed champion mastery loot grant message update recieved.";
  const struct {
    const char *why, *type, *body;
    std::string trouble;
    size_t grants;
  } kCases[] = {
      {"another type", "championmasteryLootGrant", R"({"gameId":1,"lootName":"a"})", "", 0},
      {"a number for a body", kGrantType, "7", "", 0},
      {"a text with a list", kGrantType, R"("[]")", "", 0},
      {"broken text", kGrantType, R"("{gameId")", "2 Malformed JSON message received: {gameId", 0},
      {"no game", kGrantType, R"({"lootName":"a","messageKey":"k"})", malformed, 0},
      {"a null game", kGrantType, R"({"gameId":null,"lootName":"a"})", malformed, 0},
      {"neither loot nor key", kGrantType, R"({"gameId":1})", malformed, 0},
      {"unreadable", kGrantType, R"({"gameId":"one","lootName":"a"})",
       "2 Failed to convert 'championMasteryLootGrant' to a 'LootGrantNotification' resource", 0},
      {"a key will do", kGrantType, R"({"gameId":1,"messageKey":"k"})", "", 1},
      {"as an object", kGrantType, R"({"gameId":2,"lootName":"a","id":9,"championId":3})", "", 2},
      {"as a text", kGrantType, R"("{\"gameId\":2,\"lootName\":\"a\",\"id\":9,\"championId\":3}")",
       "", 3},
  };
  NewTroubles();
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    Push(c.type, c.body);
    EXPECT_THAT(NewTroubles(), c.trouble.empty() ? std::vector<std::string>()
                                                 : std::vector<std::string>{c.trouble});
    EXPECT_EQ(host_.Published(kGrants).size(), c.grants);
  }
  EXPECT_TRUE(host_.HasLine("Received 'championMasteryLootGrant' message for champion 3."));
  const auto grants = Parse<std::vector<Api::LootGrantNotification>>(host_.Get(kGrants).body);
  ASSERT_EQ(grants.size(), 3u);
  EXPECT_EQ(grants[2].id, 2);
  EXPECT_EQ(grants[2].gameId, 2u);
  EXPECT_EQ(grants[2].lootName, "a");
  EXPECT_EQ(grants[2].championId, 3);
  EXPECT_EQ(host_.Published(kGrants).back(), host_.Get(kGrants).body);
}

TEST_F(LootNoticesTest, LoginMessagesAreShownOrAcknowledged) {
  refusedMessage_ = "m6";
  StartPlugin();
  const auto message = [](int id, const std::string& type, const std::string& params) {
    return R"({"accountId":5,"msgId":"m)" + std::to_string(id) + R"(","type":")" + type +
           R"(","params":[)" + params + "]}";
  };
  const auto keyed = [&](int id, const std::string& key) {
    return message(id, kGrantType,
                   R"("{\"gameId\":1,\"lootName\":\"a\",\"championId\":)" + std::to_string(id) +
                       key + R"(}")");
  };
  const std::string key = R"(,\"messageKey\":)";
  NewTroubles();
  Set("/tav-login/v1/login-data-packet",
      R"({"simpleMessages":[)" + keyed(1, "") + "," + keyed(2, key + R"(\"UNOWNED_CHAMPION\")") +
          "," + keyed(3, key + R"(\"GAME_LEAVER\")") + "," + message(4, "other", "\"{}\"") + "," +
          keyed(5, key + R"(\"OTHER\")") + "," + keyed(6, key + "7") + "," +
          message(7, kGrantType, "") + "," + message(8, kGrantType, "\"{x\"") + "]}");
  EXPECT_EQ(Shown(), "0:1 1:2 2:3 ");
  EXPECT_THAT(Acknowledgements(),
              ElementsAre(HasSubstr(R"("args":[{"accountId":5,"msgId":"m5","command":"ack"}])"),
                          HasSubstr(R"("msgId":"m6")")));
  EXPECT_THAT(
      NewTroubles(),
      ElementsAre("1 Failed to dismiss leaver or unowned champ from login data packet with id:m6",
                  "2 Malformed champion mastery loot grant message update recieved.",
                  "2 Malformed JSON message received: {x"));
  Remove("/tav-login/v1/login-data-packet");
  EXPECT_EQ(Dismiss("1").status, 204);
  EXPECT_THAT(NewTroubles(), ElementsAre("1 Attempted to dismiss non-existant loot-grant from "
                                         "login data packet with id:1"));
  EXPECT_EQ(Acknowledgements().size(), 2u) << "there is no message to acknowledge";
}

TEST_F(LootNoticesTest, DismissedGrantsGoAndTheirMessagesAreAcknowledged) {
  StartPlugin();
  for (const int champion : {11, 12, 13}) Push(kGrantType, Grant(champion));
  host_.ForgetPublished();
  NewTroubles();
  EXPECT_EQ(Dismiss("1").status, 204);
  EXPECT_TRUE(host_.HasLine("Acknowledged tav-loot notification with id:m"));
  EXPECT_EQ(Shown(), "0:11 2:13 ");
  EXPECT_EQ(Dismiss("1").status, 204);
  EXPECT_THAT(NewTroubles(),
              ElementsAre("1 Attempted to dismiss non-existant loot-grant with id:1"));
  EXPECT_THAT(Acknowledgements(), ElementsAre(HasSubstr(R"("accountId":5,"msgId":"m")")));
  refusedMessage_ = R"("m")";
  const FakeHost::Reply failed = Dismiss("0");
  EXPECT_EQ(failed.status, 500);
  EXPECT_THAT(failed.message, HasSubstr("no such message"));
  EXPECT_THAT(NewTroubles(),
              ::testing::Contains("2 Failed to acknowledge tav-loot notification with id:m"));
  EXPECT_EQ(Shown(), "2:13 ") << "it is gone all the same";
  EXPECT_THAT(Events(), ElementsAre("Delete " + std::string(kGrants), _));
  EXPECT_EQ(Dismiss("first").status, 400);
}

TEST_F(LootNoticesTest, GamesHoldGrantsBackUntilTheyEnd) {
  StartPlugin();
  int champion = 0;
  for (const std::string phase :
       {"Lobby", "ReadyCheck", "ChampSelect", "GameStart", "FailedToLaunch", "InProgress",
        "Reconnect", "WaitingForStats", "PreEndOfGame"}) {
    Set("/tav-gameflow/v1/session", R"({"phase":")" + phase + R"("})");
    Push(kGrantType, Grant(champion++));
    EXPECT_EQ(Shown(), "0:0 ") << phase;
  }
  EXPECT_EQ(Dismiss("4").status, 204);
  EXPECT_TRUE(host_.HasLine("non-existant loot-grant with id:4")) << "it is not shown yet";
  EXPECT_EQ(host_.CountLines("set to: disallowed. notifications will queue until next allowed."),
            8u);
  Set("/tav-gameflow/v1/session", R"({"phase":"InProgress"})");
  Remove("/tav-gameflow/v1/session");
  EXPECT_EQ(Shown(), "0:0 1:1 2:2 3:3 4:4 5:5 6:6 7:7 8:8 ");
  EXPECT_EQ(host_.Published(kGrants).size(), 2u) << "once when they become allowed";
}

TEST_F(LootNoticesTest, ChestCountsArmTheirNotificationOnlyByGrowing) {
  definitions_ =
      R"([{"lootName":"CHEST_new_player","type":"CHEST"},{"lootName":"CHEST","type":"CHEST"}])";
  StartWithLoot(R"([{"lootName":"CHEST","count":5}])");
  const auto answered = [&](const std::string& text) {
    EXPECT_EQ(host_.Post(std::string(kNotifications) + "/CHEST_new_player/acknowledge").body,
              '"' + text + '"');
  };
  const auto list = [](int count, bool acknowledged) {
    return R"([{"id":"CHEST_new_player","count":)" + std::to_string(count) + R"(,"acknowledged":)" +
           (acknowledged ? "true" : "false") + "}]";
  };
  answered("NOT_FOUND");
  EXPECT_THAT(host_.Published(kNotifications), IsEmpty());
  const struct {
    int count;
    std::string after;
    size_t published;
  } kSteps[] = {{0, "[]", 0},          {2, list(2, false), 1}, {1, list(2, true), 0},
                {2, list(2, true), 0}, {0, list(2, true), 0},  {3, list(3, false), 1}};
  for (const auto& step : kSteps) {
    host_.ForgetPublished();
    playerLoot_ = R"([{"lootName":"CHEST_new_player","count":)" + std::to_string(step.count) + "}]";
    host_.Post("/tav-loot/v1/refresh?force=true");
    EXPECT_EQ(host_.Get(kNotifications).body, step.after) << step.count;
    EXPECT_EQ(host_.Published(kNotifications).size(), step.published) << step.count;
    if (step.after == "[]") continue;
    answered("ACKNOWLEDGED");
    EXPECT_EQ(host_.Published(kNotifications).back(), list(step.count == 3 ? 3 : 2, true));
  }
  EXPECT_EQ(host_.CountLines("Adding playerLootNotification with lootId: CHEST_new_player"), 1u);
  EXPECT_EQ(host_.CountLines("Updating the playerLootNotification with lootId: CHEST_new_"), 1u);
}

}  // namespace
}  // namespace Kest::Client::Loot
