// ChestNotices publishes how many of the special chests the player holds, and whether the player
// has acknowledged it. Threads: module tasks only; it does not wait.
#pragma once

#include <string>
#include <vector>

#include "loot/state/loot_notifications.h"

namespace Kest::Client {
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class ChestNotices {
 public:
  // Borrows the client, which outlives it.
  explicit ChestNotices(SiblingClient& client) : client_(client) {}

  // Notes an item's count; publishes the list when that changes it.
  void Update(const Api::PlayerLoot& item);

  // Returns "ACKNOWLEDGED" and publishes the list, or "NOT_FOUND".
  std::string Acknowledge(const std::string& id);

  std::vector<Api::PlayerLootNotification> List() const { return notifications_.List(); }

 private:
  void Publish();

  SiblingClient& client_;
  LootNotifications notifications_;
};

}  // namespace Kest::Client::Loot
