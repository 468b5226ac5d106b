// LootNotifications counts the chests a player is told about and remembers whether the player has
// seen the count. Only the new-player chests have one. A notification is never removed: it is
// acknowledged, and armed again when the count grows.
// Threads: no lock; handlers and module tasks only. Makes no calls.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootNotifications {
 public:
  // Takes note of an item's count. True when the list has changed and is to be published. A count
  // that falls, or a first count of 0, is not recorded.
  bool Update(const Api::PlayerLoot& item);

  // False for an id without a notification; nothing changes then.
  bool Acknowledge(std::string_view id);

  std::vector<Api::PlayerLootNotification> List() const;

 private:
  std::unordered_map<std::string, Api::PlayerLootNotification> notifications_{8};
};

}  // namespace Kest::Client::Loot
