// LootGrants keeps the grants of finished games: those shown to the player, and those held back
// while the player is in a game. Ids are 0, 1, 2, ... in order of arrival.
// Threads: no lock; handlers and module tasks only. Makes no calls.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootGrants {
 public:
  // Gives the grant its id and shows it, or queues it while grants are not allowed. True when the
  // shown list has changed.
  bool Add(Api::LootGrantNotification grant);

  // Takes a grant off the shown list and answers it; nothing when it is not shown.
  std::optional<Api::LootGrantNotification> Remove(int64_t id);

  // Becoming allowed shows the queued grants, behind the ones shown, in order of arrival, and
  // answers true: the shown list is to be published. Everything else answers false.
  bool SetAllowed(bool allowed);

  const std::vector<Api::LootGrantNotification>& Shown() const { return shown_; }

 private:
  bool allowed_ = true;
  uint64_t nextId_ = 0;
  std::vector<Api::LootGrantNotification> shown_;
  std::vector<Api::LootGrantNotification> queued_;
};

}  // namespace Kest::Client::Loot
