// What the checks see at a quiet point: nothing is due, and the plugin has returned a read of
// everything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/audit/comparisons.h"
#include "host/audit/published_state.h"
#include "host/json/json.h"
#include "host/simulation/plugin_inputs.h"
#include "host/simulation/plugin_run.h"

namespace Kest::Host {

// What is read at a quiet point. Those of the inventory only once there is one: reading earlier
// would fetch it.
inline constexpr std::string_view kSwitchPaths[] = {
    "/tav-loot/v1/enabled", "/tav-loot/v1/ready", "/tav-loot/v1/player-loot-notifications",
    "/tav-loot/v1/loot-grants", "/tav-loot/v1/new-player-check-done"};
inline constexpr std::string_view kInventoryPaths[] = {
    "/tav-loot/v1/player-loot",
    "/tav-loot/v1/player-loot-map",
    "/tav-loot/v2/player-loot-map",
    "/tav-loot/v1/player-display-categories",
    "/tav-loot/v1/loot-items",
    "/tav-loot/v1/recipes/initial-item/MATERIAL_wire",
    "/tav-loot/v1/recipes/initial-item/CHAMPION_RENTAL_1",
    "/tav-loot/v1/player-loot/MATERIAL_wire/context-menu",
    "/tav-loot/v1/player-loot/CHAMPION_RENTAL_2/context-menu",
    "/tav-loot/v1/player-loot/SKIN_RENTAL_1001/context-menu"};

// What is asked there: of the items, those with a menu above.
inline constexpr std::string_view kQuestions[] = {"enabled",
                                                  "ready",
                                                  "retrieval",
                                                  "chest",
                                                  "grants",
                                                  "item/MATERIAL_wire",
                                                  "item/CHAMPION_RENTAL_2",
                                                  "item/SKIN_RENTAL_1001"};

struct QuietState {
  const PublishedState& published;
  const PluginInputs& inputs;
  std::map<std::string, PluginReply, std::less<>> responses;          // by path
  std::map<std::string, PluginReply, std::less<>> explanations = {};  // by question
  Json platform;            // its state, as "/state" shows it
  Counts held;              // its inventory
  bool knowsAll = false;    // the plugin can know the platform's inventory
  size_t openAsks = 0;      // requests to the plugin without a response
  size_t openRequests = 0;  // of the plugin, without a response
  size_t waitingTasks = 0;
  size_t lostResponses = 0;
  std::vector<std::string> subscriptions = {};
};

}  // namespace Kest::Host
