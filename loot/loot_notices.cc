// What tells the player about new loot: chest notifications and loot grants, as they are listed,
// published, acknowledged and dismissed.
#include <utility>

#include "log/logger.h"
#include "loot/loot_plugin.h"
#include "loot/state/notice_paths.h"

namespace Kest::Client::Loot {

std::vector<Api::PlayerLootNotification> LootPlugin::GetPlayerLootNotifications() {
  return state_.notifications.List();
}

std::string LootPlugin::AcknowledgePlayerLootNotification(const std::string& id) {
  if (!state_.notifications.Acknowledge(id)) return "NOT_FOUND";
  client_.Publish(kNotificationsPath, ResourceEventType::kUpdate, state_.notifications.List());
  return "ACKNOWLEDGED";
}

std::vector<Api::LootGrantNotification> LootPlugin::GetLootGrants() {
  return state_.grants.Shown();
}

void LootPlugin::PublishLootGrants() {
  client_.Publish(kGrantsPath, ResourceEventType::kUpdate, state_.grants.Shown());
}

void LootPlugin::AddLootGrant(Api::LootGrantNotification grant) {
  if (state_.grants.Add(std::move(grant))) PublishLootGrants();
}

void LootPlugin::SetGrantNotificationsAllowed(bool allowed) {
  if (state_.grants.SetAllowed(allowed)) PublishLootGrants();
}

Maybe<Nothing> LootPlugin::DismissLootGrant(int64_t id) {
  const std::optional<Api::LootGrantNotification> grant = state_.grants.Remove(id);
  if (!grant) {
    LogWarning("Attempted to dismiss non-existant loot-grant with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  client_.PublishDelete(kGrantsPath);
  if (grant->msgId.empty()) {
    // There is no message to acknowledge. The line's words are fixed, although the grant existed.
    LogWarning("Attempted to dismiss non-existant loot-grant from login data packet with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  Maybe<Nothing> acknowledged = inbound_.Acknowledge(grant->accountId, grant->msgId);
  if (acknowledged) {
    LogAlways("Acknowledged tav-loot notification with id:%s", grant->msgId.c_str());
  } else {
    LogError("Failed to acknowledge tav-loot notification with id:%s", grant->msgId.c_str());
  }
  return acknowledged;
}

}  // namespace Kest::Client::Loot
