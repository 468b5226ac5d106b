// Replaces the items of a store.
#pragma once

#include <vector>

#include "loot/state/player_loot_store.h"

namespace Kest::Client::Loot {

inline void ReplaceItems(const std::vector<Api::PlayerLoot>& items, PlayerLootStore* store) {
  PlayerLootStore::Replacement replacement;
  for (const Api::PlayerLoot& item : items) store->AddTo(&replacement, item);
  store->Replace(&replacement);
}

}  // namespace Kest::Client::Loot
