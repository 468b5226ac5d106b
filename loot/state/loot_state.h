// LootState: the data that items and views are made of. Hold no reference into it across a wait.
// Threads: module tasks only.
#pragma once

#include "loot/model/collections.h"
#include "loot/model/game_data.h"
#include "loot/model/loot_definitions.h"
#include "loot/state/player_loot_store.h"

namespace Kest::Client::Loot {

struct LootState {
  LootDefinitionsPointer definitions = std::make_shared<const LootDefinitions>();  // never null
  Collections collections;
  GameData gameData;
  PlayerLootStore store;
};

}  // namespace Kest::Client::Loot
