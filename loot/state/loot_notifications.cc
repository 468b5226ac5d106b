#include "loot/state/loot_notifications.h"

#include "log/logger.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {

bool LootNotifications::Update(const Api::PlayerLoot& item) {
  if (!Contains(kNewPlayerChestIds, item.lootId)) return false;
  const auto found = notifications_.find(item.lootId);
  if (found == notifications_.end()) {
    if (item.count == 0) return false;
    LogAlways("Adding playerLootNotification with lootId: %s", item.lootId.c_str());
    notifications_.emplace(item.lootId,
                           Api::PlayerLootNotification{item.lootId, item.count, false});
    return true;
  }
  Api::PlayerLootNotification& notification = found->second;
  if (notification.count >= item.count) return false;
  LogAlways("Updating the playerLootNotification with lootId: %s", item.lootId.c_str());
  notification.count = item.count;
  notification.acknowledged = false;
  return true;
}

bool LootNotifications::Acknowledge(std::string_view id) {
  const auto found = notifications_.find(std::string(id));
  if (found == notifications_.end()) return false;
  found->second.acknowledged = true;
  return true;
}

std::vector<Api::PlayerLootNotification> LootNotifications::List() const {
  std::vector<Api::PlayerLootNotification> list;
  list.reserve(notifications_.size());
  for (const auto& [id, notification] : notifications_) list.push_back(notification);
  return list;
}

}  // namespace Kest::Client::Loot
