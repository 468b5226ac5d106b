#include "host/simulation/allocation_walk.h"

#include <algorithm>
#include <string_view>

#include "host/simulation/seed_run.h"
#include "host/simulation/step.h"

namespace Kest::Host {
namespace {

// The steps before the failure, and those during it.
struct Scenario {
  std::string_view name;
  std::string_view before;
  std::string_view during;
  bool onlyLargeBlocks = false;  // its single allocations are those of another scenario
};

// Late enough for the next retrieval, which comes at most every three seconds.
constexpr std::string_view kSignedIn = "platform 1 POST /login\nquiet 1\nwait 1 4000\n";
constexpr std::string_view kSignedOut = "quiet 1\n";

constexpr Scenario kScenarios[] = {
    {"stop, load, start", kSignedIn, "restart 3\n"},
    {"login and retrieval", kSignedOut, "platform 2 POST /login\n"},
    {"logout", kSignedIn, "platform 2 POST /logout\nplatform 2 POST /login\n"},
    {"craft", kSignedIn,
     "ask 2 POST /tav-loot/v1/recipes/CHEST_reed_OPEN/craft [\"CHEST_reed\"]\n"},
    {"craft refused", kSignedIn,
     "ask 2 POST /tav-loot/v1/recipes/NO_such_RECIPE/craft [\"CHEST_reed\"]\n"},
    {"redeem", kSignedIn, "ask 2 POST /tav-loot/v1/player-loot/EMOTE_41/redeem\n"},
    {"publication", kSignedIn, "platform 1 PUT /collections/champions/2 {\"owned\":true}\n"},
    {"watched views", kSignedIn,  // the quiet point has read them
     "ask 2 POST /tav-loot/v1/recipes/MATERIAL_pin_FORGE/craft [\"MATERIAL_wire\"]\n"},
    {"refresh", kSignedIn,
     "platform 1 PUT /definitions/CHAMPION_RENTAL_1 {\"value\":7}\n"
     "ask 2 POST /tav-loot/v1/refresh\n"},
    {"forced refresh", kSignedIn,
     "platform 1 PUT /recipes/MATERIAL_pin_FORGE {\"crafterName\":\"bench\"}\n"
     "ask 2 POST /tav-loot/v1/refresh?force=true\n"},
    {"switches", kSignedIn,
     "platform 1 PUT /configuration/Enabled false\nplatform 1 PUT /configuration/Enabled true\n"},
    {"large definitions",
     "platform 1 PUT /recipes/MATERIAL_pin_FORGE {\"crafterName\":\"LONG\"}\n"
     "platform 1 PUT /recipes/MATERIAL_wire_DRAW {\"crafterName\":\"LONG\"}\n"
     "platform 1 PUT /recipes/CHEST_reed_OPEN {\"crafterName\":\"LONG\"}\n",
     "platform 2 POST /login\n", true},
    {"goal", kSignedIn, "platform 1 PUT /configuration/InitializationGoalFlags 7\n"},
    {"message", kSignedIn, "platform 1 POST /messages {\"name\":\"moss grant\"}\n"},
    {"malformed message", kSignedIn,
     "platform 1 POST /messages {\"name\":\"without a game\",\"as\":\"text\"}\n"},
    {"dismissed grant",
     "platform 1 POST /messages {\"name\":\"moss grant\"}\n"
     "platform 1 POST /login\nquiet 1\n",
     "ask 2 DELETE /tav-loot/v1/loot-grants/0\nask 3 DELETE /tav-loot/v1/loot-grants/1\n"},
    {"game", kSignedIn,
     "platform 1 PUT /gameflow {\"phase\":\"InProgress\"}\n"
     "platform 1 POST /messages {\"name\":\"moss grant\"}\n"
     "platform 1 PUT /gameflow {\"phase\":null}\n"},
    {"new mark", kSignedIn,
     "ask 2 DELETE /tav-loot/v1/player-loot/MATERIAL_pin/new-notification\n"},
    {"acknowledged notification", kSignedIn,
     "ask 2 POST /tav-loot/v1/player-loot-notifications/CHEST_new_player/acknowledge\n"},
    {"new player", kSignedIn, "ask 2 POST /tav-loot/v1/new-player-check-done/false\n"},
    {"configurations", kSignedIn,
     "ask 2 GET /tav-loot/v1/recipes/configuration\n"
     "ask 2 GET /tav-loot/v1/currency-configuration\n"},
    {"items", kSignedIn,
     "ask 2 GET /tav-loot/v1/player-loot\nask 2 GET /tav-loot/v1/player-loot/MATERIAL_wire\n"},
    {"maps", kSignedIn,
     "ask 2 GET /tav-loot/v1/player-loot-map\nask 2 GET /tav-loot/v2/player-loot-map\n"},
    {"definitions", kSignedIn,
     "ask 2 GET /tav-loot/v1/loot-items\nask 2 GET /tav-loot/v1/player-display-categories\n"},
    {"recipes", kSignedIn,
     "ask 2 GET /tav-loot/v1/recipes/initial-item/CHEST_reed\n"
     "ask 2 POST /tav-loot/v1/recipes/initial-item/CHAMPION_2\n"},
    {"menus", kSignedIn,
     "ask 2 GET /tav-loot/v1/player-loot/CHEST_reed/context-menu\n"
     "ask 2 POST /tav-loot/v1/player-loot/EMOTE_41/context-menu\n"},
    {"small reads", kSignedIn,
     "ask 2 GET /tav-loot/v1/enabled\nask 2 GET /tav-loot/v1/ready\n"
     "ask 2 GET /tav-loot/v1/loot-grants\nask 2 GET /tav-loot/v1/player-loot-notifications\n"
     "ask 2 GET /tav-loot/v1/new-player-check-done\nask 2 GET /tav-loot/v1/no-such-path\n"},
};

constexpr size_t kSizes[] = {250, 500, 1'000, 2'000, 4'000, 8'000, 16'000, 32'000, 1'900'000};

// Stands for a text of 700,000 bytes, of which three make blocks above every size.
constexpr std::string_view kLongText = "LONG";

// The scenario with `failure` as the line of the step that makes memory fail.
Script MakeWalk(const Scenario& scenario, const std::string& failure) {
  std::string text = "simulation 1 ordered\n";
  text.append(scenario.before);
  for (size_t at = text.find(kLongText); at != std::string::npos; at = text.find(kLongText, at)) {
    text.replace(at, kLongText.size(), 700'000, 'x');
  }
  text.append(failure).append("\n").append(scenario.during);
  return ReadScript(text + "quiet 4\nquiet 5\n").GetValue();
}

void Add(const Script& script, const Finding& finding, WalkResult* result) {
  const auto isSame = [&](const WalkFinding& other) {
    return other.finding.check == finding.check;
  };
  const auto found = std::find_if(result->findings.begin(), result->findings.end(), isSame);
  if (found != result->findings.end()) {
    ++found->runs;
  } else {
    result->findings.push_back({finding, 1, WriteScript(script)});
  }
}

// False: no allocation failed in it.
bool RunOnce(const Script& script, const Simulation::Plugin& plugin, WalkResult* result) {
  const ScriptResult run = RunScript(script, plugin);
  if (run.finding) Add(script, *run.finding, result);
  if (!run.allocationFailed) return false;
  ++result->runs;
  return true;
}

}  // namespace

std::vector<std::string> WalkScenarios() {
  std::vector<std::string> names;
  for (const Scenario& scenario : kScenarios) names.emplace_back(scenario.name);
  return names;
}

WalkResult Walk(const std::string& name, const Simulation::Plugin& plugin) {
  const Scenario& scenario =
      *std::find_if(std::begin(kScenarios), std::end(kScenarios),
                    [&name](const Scenario& other) { return other.name == name; });
  WalkResult result;
  for (size_t nth = 0; !scenario.onlyLargeBlocks; ++nth) {
    if (!RunOnce(MakeWalk(scenario, "memory 1 " + std::to_string(nth)), plugin, &result)) break;
  }
  for (const size_t size : kSizes) {
    RunOnce(MakeWalk(scenario, "cap 1 " + std::to_string(size)), plugin, &result);
  }
  return result;
}

}  // namespace Kest::Host
