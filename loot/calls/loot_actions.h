// LootActions is what the calls to the platform may ask of the plugin.
// Threads: handlers and module tasks only.
#pragma once

#include <cstdint>

#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootActions {
 public:
  // Posts the task that publishes what changed in the store. Every change to the store ends here.
  virtual void RequestPublication() = 0;

  // Posts a task that retrieves the inventory again, unless the last retrieval is too recent.
  virtual void PostRetrieval() = 0;

  // A data source has answered and its data stands in the collections: every stored item is
  // enriched anew, a publication is requested, and the source's readiness bits are set.
  virtual void OnSourceAnswered(uint8_t readinessBits) = 0;

  // Reads the tournament logos; may wait.
  virtual void LoadTournamentLogos() = 0;
  // The same as a task.
  virtual void PostTournamentLogoLoad() = 0;

  // Takes a loot grant in: shows it, or keeps it back while the player is in a game.
  virtual void AddLootGrant(Api::LootGrantNotification grant) = 0;

 protected:
  ~LootActions() = default;
};

}  // namespace Kest::Client::Loot
