#include "loot/calls/chest_notices.h"

#include "client/sibling_client.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kPath = "/tav-loot/v1/player-loot-notifications";

template <class Notifications>
std::vector<Api::PlayerLootNotification> ListOf(const Notifications& notifications) {
  std::vector<Api::PlayerLootNotification> list;
  list.reserve(notifications.size());
  for (const auto& [id, notification] : notifications) list.push_back(notification);
  return list;
}

}  // namespace

void ChestNotices::Draft::Update(const Api::PlayerLoot& item, std::vector<PublicationStep>* steps) {
  if (!Contains(kNewPlayerChestIds, item.lootId)) return;
  const auto found = notifications_.find(item.lootId);
  const bool isNew = found == notifications_.end();
  if (isNew ? item.count == 0 : item.count <= found->second.count) return;
  notifications_.insert_or_assign(item.lootId,
                                  Api::PlayerLootNotification{item.lootId, item.count, false});
  const std::string announcement = isNew ? "Adding playerLootNotification with lootId: "
                                         : "Updating the playerLootNotification with lootId: ";
  steps->push_back({client_.MakeChange(kPath, ResourceEventType::kUpdate, ListOf(notifications_)),
                    announcement + item.lootId});
}

std::string ChestNotices::Acknowledge(const std::string& id) {
  Notifications notifications = notifications_;
  const auto found = notifications.find(id);
  if (found == notifications.end()) return "NOT_FOUND";
  found->second.acknowledged = true;
  const ResourceChange change =
      client_.MakeChange(kPath, ResourceEventType::kUpdate, ListOf(notifications));
  notifications_.swap(notifications);
  ++acknowledgements_;
  client_.Publish(change);
  return "ACKNOWLEDGED";
}

std::vector<Api::PlayerLootNotification> ChestNotices::List() const {
  return ListOf(notifications_);
}

}  // namespace Kest::Client::Loot
