#include "host/simulation/script_maker.h"

#include <iterator>
#include <string>
#include <string_view>

#include "host/world/data/seeded_random.h"

namespace Kest::Host {
namespace {

// Half of a table's rows could be written with numbers in them; they are listed, so that a script
// can be read. A "#" in a body stands for a number from 1 to 9.
struct Row {
  int weight;
  StepKind kind;
  std::string_view method;
  std::string_view path;
  std::string_view body;
  int64_t most = 0;  // the number is below it
};

constexpr StepKind kAsk = StepKind::kAsk;
constexpr StepKind kPlatform = StepKind::kPlatform;

constexpr Row kRows[] = {
    // What users read.
    {6, kAsk, "GET", "/tav-loot/v2/player-loot-map", ""},
    {3, kAsk, "GET", "/tav-loot/v1/player-loot-map", ""},
    {2, kAsk, "GET", "/tav-loot/v1/player-loot", ""},
    {3, kAsk, "GET", "/tav-loot/v1/player-loot/MATERIAL_wire", ""},
    {2, kAsk, "GET", "/tav-loot/v1/loot-items", ""},
    {2, kAsk, "GET", "/tav-loot/v1/player-display-categories", ""},
    {2, kAsk, "GET", "/tav-loot/v1/recipes/configuration", ""},
    {2, kAsk, "GET", "/tav-loot/v1/currency-configuration", ""},
    {3, kAsk, "GET", "/tav-loot/v1/recipes/initial-item/MATERIAL_wire", ""},
    {3, kAsk, "POST", "/tav-loot/v1/recipes/initial-item/CHAMPION_RENTAL_1", ""},
    {3, kAsk, "GET", "/tav-loot/v1/player-loot/MATERIAL_wire/context-menu", ""},
    {3, kAsk, "POST", "/tav-loot/v1/player-loot/CHAMPION_RENTAL_2/context-menu", ""},
    {2, kAsk, "GET", "/tav-loot/v1/player-loot/SKIN_RENTAL_1001/context-menu", ""},
    {2, kAsk, "GET", "/tav-loot/v1/loot-grants", ""},
    {1, kAsk, "GET", "/tav-loot/v1/player-loot-notifications", ""},
    {1, kAsk, "GET", "/tav-loot/v1/new-player-check-done", ""},
    // What they do.
    {12, kAsk, "POST", "/tav-loot/v1/refresh?force=true", ""},
    {6, kAsk, "POST", "/tav-loot/v1/refresh", ""},
    {10, kAsk, "POST", "/tav-loot/v1/recipes/CHEST_reed_OPEN/craft", R"(["CHEST_reed"])"},
    {10, kAsk, "POST", "/tav-loot/v1/recipes/MATERIAL_pin_FORGE/craft", R"(["MATERIAL_wire"])"},
    {10, kAsk, "POST", "/tav-loot/v1/recipes/MATERIAL_wire_DRAW/craft", R"(["MATERIAL_pin"])"},
    {3, kAsk, "POST", "/tav-loot/v1/recipes/MATERIAL_pin_FORGE/craft?repeat=2",
     R"(["MATERIAL_wire"])"},
    {5, kAsk, "POST", "/tav-loot/v1/recipes/CHAMPION_RENTAL_DISENCHANT/craft",
     R"(["CHAMPION_RENTAL_1"])"},
    {5, kAsk, "POST", "/tav-loot/v1/recipes/CHAMPION_RENTAL_1_UPGRADE/craft",
     R"(["CHAMPION_RENTAL_1","CURRENCY_champion"])"},
    {4, kAsk, "POST", "/tav-loot/v1/recipes/CHAMPION_RENTAL_REROLL/craft",
     R"(["CHAMPION_RENTAL_1","CHAMPION_RENTAL_2","CHAMPION_RENTAL_2"])"},
    {4, kAsk, "POST", "/tav-loot/v1/recipes/CHAMPION_TOKEN_UPGRADE/craft",
     R"(["CHAMPION_TOKEN_moss-1","CHAMPION_RENTAL_1"])"},
    {1, kAsk, "POST", "/tav-loot/v1/recipes/NO_such_RECIPE/craft", R"(["MATERIAL_pin"])"},
    {1, kAsk, "POST", "/tav-loot/v1/recipes/CHEST_reed_OPEN/craft?repeat=often", R"([])"},
    {3, kAsk, "POST", "/tav-loot/v1/player-loot/SKIN_RENTAL_1001/redeem", ""},
    {3, kAsk, "POST", "/tav-loot/v1/player-loot/CHAMPION_2/redeem", ""},
    {3, kAsk, "POST", "/tav-loot/v1/player-loot/BOOST_breeze/redeem", ""},
    {3, kAsk, "POST", "/tav-loot/v1/player-loot/EMOTE_41/redeem", ""},
    {4, kAsk, "DELETE", "/tav-loot/v1/player-loot/MATERIAL_pin/new-notification", ""},
    {2, kAsk, "DELETE", "/tav-loot/v1/player-loot/CHAMPION_RENTAL_1/new-notification", ""},
    {3, kAsk, "DELETE", "/tav-loot/v1/loot-grants/0", ""},
    {2, kAsk, "DELETE", "/tav-loot/v1/loot-grants/1", ""},
    {2, kAsk, "POST", "/tav-loot/v1/new-player-check-done/false", ""},
    {1, kAsk, "POST", "/tav-loot/v1/new-player-check-done/true", ""},
    {1, kAsk, "POST", "/tav-loot/v1/player-loot-notifications/CHEST_new_player/acknowledge", ""},
    // Who plays.
    {6, kPlatform, "POST", "/login", ""},
    {2, kPlatform, "POST", "/login", R"({"summonerId":88,"accountId":9})"},
    {3, kPlatform, "POST", "/logout", ""},
    {1, kPlatform, "PUT", "/summoner", R"({"summonerLevel":#})"},
    {2, kPlatform, "PUT", "/gameflow", R"({"phase":"InProgress"})"},
    {3, kPlatform, "PUT", "/gameflow", R"({"phase":null})"},
    // What the platform changes.
    {1, kPlatform, "PUT", "/configuration/Enabled", "false"},
    {4, kPlatform, "PUT", "/configuration/Enabled", "true"},
    {1, kPlatform, "PUT", "/configuration/PxhEnabled", "false"},
    {4, kPlatform, "PUT", "/configuration/PxhEnabled", "true"},
    {1, kPlatform, "DELETE", "/configuration/Enabled", ""},
    {1, kPlatform, "PUT", "/configuration/InitializationGoalFlags", "63"},
    {1, kPlatform, "PUT", "/configuration/InitializationGoalFlags", "#"},
    {1, kPlatform, "PUT", "/configuration/MinSummonerLevel", "#"},
    {2, kPlatform, "PUT", "/collections/champions/2", R"({"owned":true})"},
    {2, kPlatform, "PUT", "/collections/champions/2", R"({"owned":false})"},
    {2, kPlatform, "PUT", "/collections/skins/1001", R"({"owned":false})"},
    {2, kPlatform, "PUT", "/collections/ward-skins/31", R"({"rented":true})"},
    {2, kPlatform, "PUT", "/collections/emotes/41", R"({"owned":false})"},
    {4, kPlatform, "POST", "/inventory", R"({"lootName":"MATERIAL_wire","delta":#})"},
    {3, kPlatform, "POST", "/inventory", R"({"lootName":"CHAMPION_RENTAL_1","delta":#})"},
    {3, kPlatform, "POST", "/inventory", R"({"lootName":"CHEST_reed","delta":#})"},
    {2, kPlatform, "POST", "/inventory", R"({"lootName":"CURRENCY_champion","delta":-#})"},
    {2, kPlatform, "POST", "/inventory",
     R"({"lootName":"CHAMPION_TOKEN_moss","refId":"1","delta":#})"},
    {5, kPlatform, "PUT", "/definitions/CHAMPION_RENTAL_1", R"({"value":#00})"},
    {3, kPlatform, "PUT", "/recipes/MATERIAL_pin_FORGE", R"({"crafterName":"bench #"})"},
    {2, kPlatform, "POST", "/messages", R"({"name":"moss grant"})"},
    {1, kPlatform, "POST", "/messages", R"({"name":"another moss grant","as":"text"})"},
    {1, kPlatform, "POST", "/messages", R"({"name":"without a game"})"},
    {1, kPlatform, "PUT", "/token", R"({"token":null})"},
    {2, kPlatform, "DELETE", "/token", ""},
    // How its service behaves.
    {3, kPlatform, "PUT", "/service/getAllPlayerLootAndAllDefinitions", R"({"latency":#00})"},
    {3, kPlatform, "PUT", "/service/getAllPlayerLootAndAllDefinitions", R"({"latency":0})"},
    {2, kPlatform, "PUT", "/service/getAllPlayerLootAndAllDefinitions", R"({"error":"down"})"},
    {3, kPlatform, "PUT", "/service/craftPlayerLootWithRefId", R"({"latency":#00})"},
    {3, kPlatform, "PUT", "/service/craftPlayerLootWithRefId", R"({"latency":0})"},
    {2, kPlatform, "PUT", "/service/craftPlayerLootWithRefId", R"({"error":"down"})"},
    {1, kPlatform, "PUT", "/service/redeemPlayerLoot", R"({"status":"NOT_NOW"})"},
    {1, kPlatform, "PUT", "/service/getClientConfiguration", R"({"error":"down"})"},
    {1, kPlatform, "PUT", "/service/callPersistenceMessaging", R"({"error":"down"})"},
    // The network, the clock, the process.
    {1, StepKind::kResponse, "lost", "", ""},
    {2, StepKind::kResponse, "twice", "", "", 500},
    {3, StepKind::kResponse, "late", "", "", 2000},
    {1, StepKind::kRefuse, "", "", ""},
    {10, StepKind::kWait, "", "", "", 200},
    {4, StepKind::kWait, "", "", "", 5000},
    {1, StepKind::kRestart, "", "", ""},
    {10, StepKind::kQuiet, "", "", ""},
};

constexpr Row kMemoryRow = {8, StepKind::kMemory, "", "", "", 400};

constexpr int TotalWeight() {
  int total = 0;
  for (const Row& row : kRows) total += row.weight;
  return total;
}

const Row& Draw(bool failMemory, SeededRandom& random) {
  const int total = TotalWeight() + (failMemory ? kMemoryRow.weight : 0);
  int ticket = static_cast<int>(random.Below(static_cast<uint64_t>(total)));
  for (const Row& row : kRows) {
    if (ticket < row.weight) return row;
    ticket -= row.weight;
  }
  return kMemoryRow;
}

Step MakeStep(const Row& row, SeededRandom& random) {
  Step step{row.kind,
            random.Below(1'000'000),
            std::string(row.method),
            std::string(row.path),
            std::string(row.body),
            0};
  const size_t digit = step.body.find('#');
  if (digit != std::string::npos) step.body[digit] = static_cast<char>('1' + random.Below(9));
  if (row.most > 0)
    step.number = static_cast<int64_t>(random.Below(static_cast<uint64_t>(row.most)));
  return step;
}

}  // namespace

Script MakeScript(const ScriptOptions& options) {
  SeededRandom random(options.seed);
  Script script{options.seed, random.Below(2) == 0, {}};
  // Most runs begin as a player's evening does.
  if (random.Below(4) != 0) {
    script.steps.push_back({kPlatform, random.Below(1'000'000), "POST", "/login", "", 0});
  }
  while (script.steps.size() + 1 < options.steps) {
    script.steps.push_back(MakeStep(Draw(options.failMemory, random), random));
  }
  script.steps.push_back({StepKind::kQuiet, random.Below(1'000'000), "", "", "", 0});
  return script;
}

}  // namespace Kest::Host
