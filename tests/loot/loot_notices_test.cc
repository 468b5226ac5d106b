// Chest notifications, loot grants, and the platform messages that bring grants.
#include "tests/loot/trace_fixture.h"

namespace Kest::Client::Loot {
namespace {

class LootNoticesTest : public TraceTest {
 protected:
  static constexpr const char* kGameflow = "/tav-gameflow/v1/session";

  LootNoticesTest() {
    host_.OnService("clientFacadeService", "callPersistenceMessaging", [this](auto& call) {
      const bool refused = call.find(refusedMessage_) != std::string::npos;
      return ServiceReply{"", refused ? "no such message" : "", false, refused ? 503 : 0};
    });
  }
  void Dismiss(const std::string& path) { host_.Request("DELETE", "/tav-loot/v1/" + path); }

  std::string refusedMessage_ = "none";
};

TEST_F(LootNoticesTest, OnlyWellFormedMasteryMessagesBecomeGrants) {
  StartPlugin();
  BeginTrace();
  const std::pair<const char*, const char*> kMessages[] = {
      {"championmasteryLootGrant", R"({"gameId":1,"lootName":"a"})"},
      {kGrantType, "7"},
      {kGrantType, R"("[]")"},
      {kGrantType, R"("{gameId")"},
      {kGrantType, R"({"lootName":"a","messageKey":"k"})"},
      {kGrantType, R"({"gameId":null,"lootName":"a"})"},
      {kGrantType, R"({"gameId":1,"championId":7})"},
      {kGrantType, R"({"gameId":"one","lootName":"a"})"},
      {kGrantType, R"({"gameId":1,"messageKey":"k"})"},
      {kGrantType, R"({"gameId":2,"lootName":"a","id":9,"championId":3})"},
      {kGrantType, R"("{\"gameId\":2,\"lootName\":\"a\",\"id\":9,\"championId\":3}")"}};
  for (const auto& [type, body] : kMessages) Push(type, body);
  ExpectTrace("mastery_messages");
}

TEST_F(LootNoticesTest, LoginMessagesAreShownOrAcknowledged) {
  refusedMessage_ = "m6";
  StartPlugin();
  const std::string grant = R"("{\"gameId\":1,\"lootName\":\"a\")";
  const std::pair<const char*, std::string> kMessages[] = {
      {kGrantType, grant + "}\""},
      {kGrantType, grant + R"(,\"messageKey\":\"UNOWNED_CHAMPION\"}")"},
      {kGrantType, grant + R"(,\"messageKey\":\"GAME_LEAVER\"}")"},
      {"other", "\"{}\""},
      {kGrantType, grant + R"(,\"messageKey\":\"OTHER\"}")"},
      {kGrantType, grant + R"(,\"messageKey\":7}")"},
      {kGrantType, ""},
      {kGrantType, "\"{x\""}};
  std::string messages;
  int id = 0;
  for (const auto& [type, body] : kMessages) {
    messages += messages.empty() ? "" : ",";
    messages += R"({"accountId":5,"msgId":"m)" + std::to_string(++id) + R"(","type":")" + type +
                R"(","params":[)" + body + "]}";
  }
  BeginTrace();
  Set("/tav-login/v1/login-data-packet", R"({"simpleMessages":[)" + messages + "]}");
  Remove("/tav-login/v1/login-data-packet");
  Dismiss("loot-grants/1");
  ExpectTrace("login_messages");
}

TEST_F(LootNoticesTest, Dismissals) {
  refusedMessage_ = "\"b\"";
  definitions_ = R"([{"lootName":"CHEST_plain","type":"CHEST"}])";
  StartWithLoot("[]");
  BeginTrace();
  for (const std::string id : {"a", "b", ""}) {
    Push(kGrantType, R"({"gameId":1,"lootName":"x","accountId":5,"msgId":")" + id + "\"}");
  }
  for (const char* id : {"0", "1", "2", "2", "first"}) Dismiss("loot-grants/" + std::string(id));
  host_.Get("/tav-loot/v1/loot-grants");
  Craft(R"("added":[{"lootName":"CHEST_plain","count":2}])");
  for (int i = 0; i < 2; ++i) Dismiss("player-loot/CHEST_plain/new-notification");
  Dismiss("player-loot/UNKNOWN/new-notification");
  Craft(R"("removed":[{"lootName":"CHEST_plain","count":1}])");  // what is left is not new
  ExpectTrace("dismissals");
}

TEST_F(LootNoticesTest, GamesHoldGrantsBackUntilTheyEnd) {
  StartPlugin();
  BeginTrace();
  for (const std::string phase :
       {"ReadyCheck", "ChampSelect", "GameStart", "FailedToLaunch", "InProgress", "Reconnect",
        "WaitingForStats", "PreEndOfGame", "EndOfGame", "Lobby", "InProgress"}) {
    Set(kGameflow, R"({"phase":")" + phase + R"("})");
    if (phase.ends_with("Game") || phase == "Lobby") {
      Push(kGrantType, R"({"gameId":1,"lootName":"x"})");
    }
  }
  Dismiss("loot-grants/9");
  Remove(kGameflow);
  ExpectTrace("gameflow");
}

TEST_F(LootNoticesTest, ChestCountsArmTheirNotificationOnlyByGrowing) {
  definitions_ =
      R"([{"lootName":"CHEST_new_player","type":"CHEST"},{"lootName":"CHEST","type":"CHEST"}])";
  StartWithLoot(R"([{"lootName":"CHEST","count":5}])");
  const std::string notifications = "/tav-loot/v1/player-loot-notifications";
  BeginTrace();
  host_.Post(notifications + "/CHEST_new_player/acknowledge");
  for (const int count : {0, 2, 1, 2, 0, 3}) {
    playerLoot_ = R"([{"lootName":"CHEST_new_player","count":)" + std::to_string(count) + "}]";
    host_.Post("/tav-loot/v1/refresh?force=true");
    host_.Get(notifications);
    if (count != 0) host_.Post(notifications + "/CHEST_new_player/acknowledge");
  }
  ExpectTrace("chest_notifications");
}

}  // namespace
}  // namespace Kest::Client::Loot
