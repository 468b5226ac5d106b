#include "loot/calls/chest_notices.h"

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {

void ChestNotices::Update(const Api::PlayerLoot& item) {
  if (!Contains(kNewPlayerChestIds, item.lootId)) return;
  const auto found = notifications_.find(item.lootId);
  const bool isNew = found == notifications_.end();
  if (isNew ? item.count == 0 : item.count <= found->second.count) return;
  LogAlways(isNew ? "Adding playerLootNotification with lootId: %s"
                  : "Updating the playerLootNotification with lootId: %s",
            item.lootId.c_str());
  notifications_.insert_or_assign(item.lootId,
                                  Api::PlayerLootNotification{item.lootId, item.count, false});
  Publish();
}

std::string ChestNotices::Acknowledge(const std::string& id) {
  const auto found = notifications_.find(id);
  if (found == notifications_.end()) return "NOT_FOUND";
  found->second.acknowledged = true;
  Publish();
  return "ACKNOWLEDGED";
}

std::vector<Api::PlayerLootNotification> ChestNotices::List() const {
  std::vector<Api::PlayerLootNotification> list;
  list.reserve(notifications_.size());
  for (const auto& [id, notification] : notifications_) list.push_back(notification);
  return list;
}

void ChestNotices::Publish() {
  client_.Publish("/tav-loot/v1/player-loot-notifications", ResourceEventType::kUpdate, List());
}

}  // namespace Kest::Client::Loot
