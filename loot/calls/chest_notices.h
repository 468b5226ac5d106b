// ChestNotices counts the new-player chests and remembers whether the player has acknowledged the
// count. A notification is never removed, only acknowledged; it counts as new again when the count
// grows. Every change is published. Threads: module tasks only; it does not wait.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "loot/calls/forward.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class ChestNotices {
 public:
  // Borrows the client, which outlives it.
  explicit ChestNotices(SiblingClient& client) : client_(client) {}

  // Records an item's count; a falling one, or a first count of 0, is ignored.
  void Update(const Api::PlayerLoot& item);

  // Returns "ACKNOWLEDGED", or "NOT_FOUND" for an id without a notification.
  std::string Acknowledge(const std::string& id);

  std::vector<Api::PlayerLootNotification> List() const;

 private:
  void Publish();

  SiblingClient& client_;
  std::unordered_map<std::string, Api::PlayerLootNotification> notifications_{8};
};

}  // namespace Kest::Client::Loot
