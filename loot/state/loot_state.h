// LootState is all the data of the loot plugin. It outlives everything that works on it.
// Threads: no lock; handlers and module tasks only. Hold no reference into it across a wait.
#pragma once

#include "loot/model/collections.h"
#include "loot/model/game_data.h"
#include "loot/model/loot_definitions.h"
#include "loot/state/loot_grants.h"
#include "loot/state/loot_notifications.h"
#include "loot/state/loot_status.h"
#include "loot/state/player_loot_store.h"
#include "loot/state/readiness.h"

namespace Kest::Client::Loot {

struct LootState {
  LootStatus status;
  Readiness readiness;
  LootDefinitions definitions;
  Collections collections;
  GameData gameData;
  PlayerLootStore store;
  LootNotifications notifications;
  LootGrants grants;
};

}  // namespace Kest::Client::Loot
