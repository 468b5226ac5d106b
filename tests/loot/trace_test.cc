// What the plugin does and in which order: requests, subscriptions, publications, tasks posted and
// run, log lines and answers, compared with the texts in tests/loot/traces.
#include <algorithm>
#include <regex>

#include "base/platform.h"
#include "tests/loot/loot_plugin_fixture.h"
#include "tests/loot/token_text.h"
#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

using Testing::Action;

constexpr const char* kItem = "/tav-loot/v1/player-loot/";
constexpr const char* kSession = "/tav-login/v1/session";
constexpr const char* kGrantType = "championMasteryLootGrant";

// `"key":value` for each of `keys` that the JSON has; a false one is left out.
std::string Fields(const std::string& json, std::initializer_list<const char*> keys) {
  std::string fields;
  for (const std::string key : keys) {
    const size_t at = json.find("\"" + key + "\":");
    if (at == std::string::npos) continue;
    const std::string field = json.substr(at, json.find_first_of(",}", at) - at);
    if (!field.ends_with(":false")) fields += field + " ";
  }
  return "{.. " + fields + "..}";
}

std::string Shorten(const std::string& text) {
  constexpr size_t kMost = 120;
  return text.size() <= kMost ? text : text.substr(0, kMost) + "..";
}

// "call service-proxy-uuid-requests loot.redeemPlayerLoot [..]" of a request to a service's method.
std::string Call(const Action& request) {
  const std::regex pattern(R"re(\{"serviceName":"(.*?)","methodName":"(.*?)","args":(.*)\})re");
  return "call " + request.name.substr(request.name.rfind('/') + 1) + " " +
         std::regex_replace(request.detail, pattern, "$1.$2 $3");
}

// "ERROR| | text" of a line as it is handed to the host.
std::string WithoutTime(const std::string& line) {
  return line.substr(line.find_first_not_of(' ', line.find('|') + 1));
}

// An action as the texts have it; empty for one that they leave out.
std::string Line(Action action, bool isWhole) {
  const bool isItem = action.name.find(kItem) != std::string::npos;
  switch (action.kind) {
    case Action::kStep:
      return "\n" + Print(action);
    case Action::kWait:
    case Action::kWaitEnd:
      return isWhole ? Print(action) : "";
    case Action::kLog:
      action.name = WithoutTime(action.name);
      if (!isWhole && action.name.find("service proxy request:") != std::string::npos) return "";
      return action.level == 0 ? "" : Print(action);
    case Action::kEvent: {
      if (action.name.starts_with("OnJsonApiEvent")) return "";  // the step says it
      const std::string fields = Fields(action.detail, {"methodName", "typeName", "error"});
      return "event " + action.name + " " + fields;
    }
    case Action::kPublish:
      if (action.detail.size() > 70) {
        action.detail = isItem ? Fields(action.detail, {"count", "redeemableStatus", "isNew"})
                               : Fields(action.detail, {"version"});
      }
      return Print(action);
    case Action::kRequest:
      return action.detail.empty() ? Print(action) : Call(action);
    case Action::kAnswer:
      return "answer " + Shorten(action.detail);  // the step says to what
    default:
      return Print(action);
  }
}

class TraceTest : public LootPluginTest {
 protected:
  TraceTest() {
    host_.KeepOrder();
    const std::string logos = MakeToken(R"({"items":{"TOURNAMENT_LOGO":[]}})");
    AnswerGet("/tav-inventory/v1/signedInventory", R"({"TOURNAMENT_LOGO":")" + logos + "\"}");
    for (const char* file : {"profile-icons.json", "summoner-emotes.json"}) {
      AnswerGet("/tav-game-data/assets/v1/" + std::string(file), "[]");
    }
    SetUuidSourceForTests([](UuidBytes* uuid) {
      uuid->fill(0xab);
      return true;
    });
  }
  ~TraceTest() override { SetUuidSourceForTests(nullptr); }

  // What happens from here on is compared.
  void BeginTrace() { begin_ = host_.Actions().size(); }

  // Items of one publication come in the order of a hash table, which differs between systems.
  void ExpectTrace(const std::string& name, bool isWhole = false) {
    std::vector<std::string> lines;
    const std::vector<Action> actions = host_.Actions();
    for (size_t i = begin_; i < actions.size(); ++i) {
      lines.push_back(Line(actions[i], isWhole));
      const auto isItem = [](const std::string& line) {
        return line.starts_with("publish ") && line.find(kItem) == 15;
      };
      for (size_t at = lines.size() - 1; at > 0 && isItem(lines[at]) && isItem(lines[at - 1]) &&
                                         lines[at].substr(15) < lines[at - 1].substr(15);
           --at) {
        std::swap(lines[at], lines[at - 1]);
      }
    }
    std::string text;
    for (const std::string& line : lines) text += line.empty() ? "" : line + "\n";
    EXPECT_TRUE(Testing::GoldenText("tests/loot/traces/" + name + ".txt", text));
  }

  void SetSession(const std::string& state, const std::string& summoner = "7") {
    Set(kSession, R"({"state":")" + state + R"(","summonerId":)" + summoner + R"(,"accountId":1})");
  }
  void SetSources(const std::string& summoner) {
    Set("/tav-champions/v1/inventories/" + summoner + "/champions-minimal",
        R"([{"id":11,"ownership":{"owned":true}}])");
    Set("/tav-collections/v1/inventories/" + summoner + "/ward-skins", "[]");
    Set("/tav-collections/v1/inventories/" + summoner + "/summoner-icons", R"({"icons":[1]})");
    Set("/tav-inventory/v1/inventory/emotes", "[]");
  }
  void Craft(const std::string& deltas, const char* status = "OK", const char* error = "") {
    result_ = {R"({"status":")" + std::string(status) + R"(",)" + deltas + "}", error};
    host_.Post("/tav-loot/v1/recipes/OPEN/craft", R"(["CHEST_plain"])");
  }

  size_t begin_ = 0;
};

TEST_F(TraceTest, Start) {
  Enable();
  SetSession("SUCCEEDED");
  BeginTrace();
  StartPlugin();
  ExpectTrace("start", /*isWhole=*/true);
}

TEST_F(TraceTest, LoginAndSources) {
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal", R"([{"id":11000,"championId":11}])");
  StartWithLoot(R"([{"lootName":"SHARD_11","count":1}])");
  BeginTrace();
  for (const char* state : {"IN_PROGRESS", "SUCCEEDED", "SUCCEEDED"}) SetSession(state);
  SetSources("7");
  Set("/tav-inventory/v1/inventory/emotes", "[]");  // again: no news
  SetSession("LOGGING_OUT");
  SetSession("SUCCEEDED", "8");
  Set("/tav-champions/v1/inventories/7/champions-minimal", "[]");  // of one who has left
  Set("/tav-champions/v1/inventories/8/champions-minimal", "[]");  // without skins
  Logout();
  Logout();
  ExpectTrace("login");
}

TEST_F(TraceTest, Retrieval) {
  StartPlugin();
  Enable();
  playerLoot_ = R"([{"lootName":"ODD","count":1}])";
  BeginTrace();
  retrievalError_ = "down";
  host_.Get(kLootMap);
  retrievalError_.clear();
  host_.Get(kLootMap);
  host_.Post("/tav-loot/v1/refresh?force=true");  // the same again
  host_.Post("/tav-loot/v1/refresh");
  host_.AdvanceSeconds(3);
  playerLoot_ = R"([{"lootName":"SHARD_11","count":1},{"lootName":"NOBODY","count":1}])";
  ++itemsVersion_;
  definitions_ = R"([{"lootName":"SHARD_11","displayCategories":"CHAMPION"}])";
  host_.Post("/tav-loot/v1/refresh");
  host_.AdvanceSeconds(3);
  retrievalError_ = "down";
  host_.Post("/tav-loot/v1/refresh");
  ExpectTrace("retrieval");
}

TEST_F(TraceTest, Transactions) {
  StartWithLoot(R"([{"lootName":"CHEST_plain","count":1},{"lootName":"SKIN_11005","count":1}])");
  host_.AdvanceSeconds(3);
  host_.Get(kItem + std::string("CHEST_plain/context-menu"));
  BeginTrace();
  host_.Post("/tav-loot/v1/recipes/OPEN/craft?repeat=5", R"(["A","B-42","C-1-2"])");
  Craft(
      R"("added":[{"lootName":"ODD","count":2}],"removed":[{"lootName":"CHEST_plain","count":1}])");
  result_.payload = R"({"status":"OK","redeemed":["SKIN_11005","NOBODY"]})";
  host_.Post(kItem + std::string("SKIN_11005/redeem"));
  Craft(R"("removed":[{"lootName":"ODD","count":1}])");
  Craft(R"("added":[{"lootName":"ODD","count":1}])", "TOO_FREQUENT");
  for (int i = 0; i < 2; ++i) Craft(R"("added":[{"lootName":"ODD","count":1}])", "OK", "lost");
  Config("Enabled", "false");
  Craft("");
  ExpectTrace("transactions");
}

TEST_F(TraceTest, AWholeCraft) {
  StartWithLoot("[]");
  BeginTrace();
  Craft(R"("added":[{"lootName":"ODD","count":1}])");
  ExpectTrace("craft", /*isWhole=*/true);
}

TEST_F(TraceTest, HeldTasksAreMerged) {
  StartWithLoot("[]");
  BeginTrace();
  host_.HoldTasks();
  for (int i = 0; i < 2; ++i) Craft(R"("added":[{"lootName":"ODD","count":1}])");
  host_.RunHeldTasks();
  Craft(R"("removed":[{"lootName":"ODD","count":2}])");
  Craft(R"("added":[{"lootName":"ODD","count":2}])");
  host_.RunHeldTasks();
  ExpectTrace("held_tasks");
}

TEST_F(TraceTest, Dismissals) {
  definitions_ = R"([{"lootName":"CHEST_new_player","type":"CHEST"}])";
  StartWithLoot(R"([{"lootName":"CHEST_new_player","count":1}])");
  std::string error;
  host_.OnService("clientFacadeService", "callPersistenceMessaging", [&](auto&) {
    return ServiceReply{"", error, false, error.empty() ? 0 : 503};
  });
  BeginTrace();
  const auto dismiss = [this](const std::string& path) {
    host_.Request("DELETE", "/tav-loot/v1/" + path);
  };
  for (const char* id : {"a", "b", ""}) {
    Push(kGrantType,
         R"({"gameId":1,"lootName":"x","accountId":5,"msgId":")" + std::string(id) + "\"}");
  }
  dismiss("loot-grants/0");
  error = "refused";
  for (const char* id : {"1", "2", "2"}) dismiss("loot-grants/" + std::string(id));
  const std::string acknowledge =
      "/tav-loot/v1/player-loot-notifications/CHEST_new_player/acknowledge";
  host_.Post(acknowledge);
  Craft(R"("added":[{"lootName":"CHEST_new_player","count":1}])");
  for (int i = 0; i < 2; ++i) dismiss("player-loot/CHEST_new_player/new-notification");
  dismiss("player-loot/NOBODY/new-notification");
  Craft(R"("removed":[{"lootName":"CHEST_new_player","count":1}])");
  host_.Post("/tav-loot/v1/player-loot-notifications/CHEST/acknowledge");
  ExpectTrace("dismissals");
}

TEST_F(TraceTest, Settings) {
  StartPlugin();
  SetSession("SUCCEEDED");
  BeginTrace();
  const std::pair<const char*, const char*> kSettings[] = {{"Enabled", "true"},
                                                           {"PxhEnabled", "true"},
                                                           {"PxhEnabled", "true"},
                                                           {"MinSummonerLevel", "10"},
                                                           {"NewPlayerChestEnabled", "true"},
                                                           {"InitializationGoalFlags", "0"},
                                                           {"InitializationGoalFlags", "0"},
                                                           {"InitializationGoalFlags", "63"},
                                                           {"Enabled", "false"},
                                                           {"MinSummonerLevel", "11"},
                                                           {"Enabled", "\"perhaps\""}};
  for (const auto& [name, value] : kSettings) Config(name, value);
  Remove("/tav-platform-config/v1/namespaces/LootConfig/PxhEnabled");
  host_.AdvanceSeconds(29);
  SetSession("SUCCEEDED");  // no new login
  Config("Enabled", "true");
  host_.AdvanceSeconds(1);
  Config("MinSummonerLevel", "12");
  SetSession("ERROR");
  SetSession("SUCCEEDED");  // the check may be scheduled again
  Config("MinSummonerLevel", "13");
  host_.Get(kLootMap);
  Config("MinSummonerLevel", "14");  // an inventory was retrieved
  ExpectTrace("settings");
}

TEST_F(TraceTest, NewPlayerChest) {
  StartPlugin();
  Enable();
  Config("MinSummonerLevel", "10");
  Config("NewPlayerChestEnabled", "true");
  BeginTrace();
  const auto level = [this](const std::string& value) {
    Set("/tav-summoner/v1/current-summoner", R"({"summonerLevel":)" + value + "}");
  };
  const std::string done = "/tav-loot/v1/new-player-check-done/";
  level("9");
  result_.payload = R"({"status":"OK","added":[{"lootName":"CHEST_plain","count":1}]})";
  level("10");
  level("11");
  host_.Post(done + "false");
  Set("/tav-login/v1/login-data-packet",
      R"({"allSummonerData":{"summonerLevelAndPoints":{"summonerLevel":10}},"simpleMessages":[]})");
  level("10");
  result_ = {"{}", "not today"};
  host_.Post(done + "false");
  host_.Post(done + "true");
  result_ = {R"({"status":"REFUSED"})"};
  host_.Post(done + "false");
  ExpectTrace("new_player_chest");
}

TEST_F(TraceTest, ClientConfiguration) {
  ServiceReply reply{
      R"({"lootItemsUsingBreakoutRecipeMenu":["a"],"currenciesUsingCapWallets":[]})"};
  host_.OnService("loot", "getClientConfiguration", [&](auto&) { return reply; });
  StartPlugin();
  BeginTrace();
  for (int i = 0; i < 2; ++i) host_.Get("/tav-loot/v1/recipes/configuration");
  reply = {R"({"currenciesUsingCapWallets":["c"]})"};
  for (int i = 0; i < 2; ++i) host_.Get("/tav-loot/v1/currency-configuration");
  reply.error = "down";
  host_.Get("/tav-loot/v1/currency-configuration");
  ExpectTrace("client_configuration");
}

TEST_F(TraceTest, GamesHoldGrantsBack) {
  StartPlugin();
  const std::string grant = R"("{\"gameId\":1,\"lootName\":\"x\",\"championId\":3}")";
  BeginTrace();
  for (const char* phase : {"ChampSelect", "InProgress"}) {
    Set("/tav-gameflow/v1/session", R"({"phase":")" + std::string(phase) + "\"}");
    Push(kGrantType, grant);
  }
  Set("/tav-gameflow/v1/session", R"({"phase":"EndOfGame"})");
  Set("/tav-gameflow/v1/session", R"({"phase":"Reconnect"})");
  Remove("/tav-gameflow/v1/session");
  ExpectTrace("gameflow");
}

TEST_F(TraceTest, CallsThatAreNotTaken) {
  StartWithLoot("[]");
  host_.AdvanceSeconds(3);
  Config("MinSummonerLevel", "10");
  Config("NewPlayerChestEnabled", "true");
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests", {503, "", "busy"});
  BeginTrace();
  host_.Post("/tav-loot/v1/refresh?force=true");
  Craft("");
  host_.AdvanceSeconds(3);
  host_.Post("/tav-loot/v1/refresh");
  for (int i = 0; i < 2; ++i) {
    Set("/tav-summoner/v1/current-summoner", R"({"summonerLevel":1)" + std::to_string(i) + "}");
  }
  host_.Post("/tav-loot/v1/new-player-check-done/false");
  host_.Get("/tav-loot/v1/recipes/configuration");
  ExpectTrace("calls_not_taken");
}

TEST_F(TraceTest, StopWithCallsInFlight) {
  StartWithLoot("[]");
  SetSession("SUCCEEDED");
  result_.held = true;
  AnswerGet("/tav-champions/v1/inventories/7/skins-minimal", "[]", /*held=*/true);
  BeginTrace();
  host_.Post("/tav-loot/v1/player-loot/ODD/redeem");
  Set("/tav-champions/v1/inventories/7/champions-minimal", "[]");
  host_.HoldTasks();
  host_.Get("/tav-loot/v1/recipes/configuration");
  host_.Stop();
  host_.ReleaseHeld();
  host_.RunHeldTasks();
  host_.Get("/tav-loot/v1/enabled");
  ExpectTrace("stop", /*isWhole=*/true);
}

}  // namespace
}  // namespace Kest::Client::Loot
