// Whole scenarios of the plugin's life: start, login, retrieval, transactions, settings, stop.
#include "tests/loot/trace_fixture.h"

namespace Kest::Client::Loot {
namespace {

TEST_F(TraceTest, Start) {
  Enable();
  SetSession("SUCCEEDED");
  BeginTrace();
  StartPlugin();
  ExpectTrace("start", /*isComplete=*/true);
}

TEST_F(TraceTest, LoginAndSources) {
  RespondToGet("/tav-champions/v1/inventories/7/skins-minimal",
               R"([{"id":11000,"championId":11}])");
  StartWithLoot(R"([{"lootName":"SHARD_11","count":1}])");
  BeginTrace();
  for (const char* state : {"IN_PROGRESS", "SUCCEEDED", "SUCCEEDED"}) SetSession(state);
  SetSources("7");
  Set("/tav-inventory/v1/inventory/emotes", "[]");  // again: no news
  SetSession("LOGGING_OUT");
  SetSession("SUCCEEDED", "8");
  Set("/tav-champions/v1/inventories/7/champions-minimal", "[]");  // of one who has left
  Set("/tav-champions/v1/inventories/8/champions-minimal", "[]");  // without skins
  RespondToGet("/tav-champions/v1/inventories/8/skins-minimal", "[]", /*held=*/true);
  Set("/tav-champions/v1/inventories/8/champions-minimal", "[]");
  Logout();
  host_.ReleaseHeld();  // skins that come too late
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
  definitions_ = R"([{"lootName":"SHARD_11","displayCategories":"CHAMPION"}])";
  host_.Post("/tav-loot/v1/refresh?force=true");  // the same items; definitions of a known version
  host_.AdvanceSeconds(2);
  host_.Post("/tav-loot/v1/refresh");
  host_.AdvanceSeconds(1);
  playerLoot_ = R"([{"lootName":"SHARD_11","count":1},{"lootName":"UNKNOWN","count":1}])";
  ++itemsVersion_;
  host_.Post("/tav-loot/v1/refresh");
  host_.AdvanceSeconds(3);
  retrievalError_ = "down";
  host_.Post("/tav-loot/v1/refresh");
  ExpectTrace("retrieval");
}

TEST_F(TraceTest, Transactions) {
  recipes_ = R"([{"recipeName":"OPEN","type":"OPEN","slots":[{"slotNumber":1,
      "query":"CHEST_plain","quantityExpression":"1"}]}])";
  StartWithLoot(R"([{"lootName":"CHEST_plain","count":1},{"lootName":"SKIN_11005","count":1}])");
  host_.AdvanceSeconds(3);
  host_.Get(kItem + std::string("CHEST_plain/context-menu"));
  BeginTrace();
  host_.Post("/tav-loot/v1/recipes/OPEN/craft?repeat=5", R"(["A","B-42","C-1-2"])");
  Craft(
      R"("added":[{"lootName":"ODD","count":2}],"removed":[{"lootName":"CHEST_plain","count":1}])");
  result_.payload = R"({"status":"OK","redeemed":["SKIN_11005","UNKNOWN"]})";
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
  ExpectTrace("craft", /*isComplete=*/true);
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

TEST_F(TraceTest, Settings) {
  StartPlugin();
  SetSession("SUCCEEDED");
  BeginTrace();
  const std::pair<const char*, const char*> kSettings[] = {{"Enabled", "true"},
                                                           {"PxhEnabled", "true"},
                                                           {"PxhEnabled", "true"},
                                                           {"MinSummonerLevel", "10"},
                                                           {"NewPlayerChestEnabled", "true"},
                                                           {"InitializationGoalFlags", "300"},
                                                           {"InitializationGoalFlags", "0"},
                                                           {"InitializationGoalFlags", "0"},
                                                           {"InitializationGoalFlags", "65"},
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
  host_.Get("/tav-loot/v1/new-player-check-done");
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
  for (const std::string level : {"10", "11", "10"}) {  // a check that was not sent is not done
    Set("/tav-summoner/v1/current-summoner", R"({"summonerLevel":)" + level + "}");
  }
  host_.Post("/tav-loot/v1/new-player-check-done/false");
  host_.Get("/tav-loot/v1/recipes/configuration");
  ExpectTrace("calls_not_taken");
}

TEST_F(TraceTest, StopWithCallsInFlight) {
  StartWithLoot("[]");
  SetSession("SUCCEEDED");
  result_.held = true;
  RespondToGet("/tav-champions/v1/inventories/7/skins-minimal", "[]", /*held=*/true);
  BeginTrace();
  host_.Post("/tav-loot/v1/player-loot/ODD/redeem");
  Set("/tav-champions/v1/inventories/7/champions-minimal", "[]");
  host_.HoldTasks();
  host_.Get("/tav-loot/v1/recipes/configuration");
  host_.Stop();
  host_.ReleaseHeld();
  host_.RunHeldTasks();
  host_.Get("/tav-loot/v1/enabled");
  ExpectTrace("stop", /*isComplete=*/true);
}

}  // namespace
}  // namespace Kest::Client::Loot
