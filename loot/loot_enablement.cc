#include "loot/loot_enablement.h"

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/watched_views.h"

namespace Kest::Client::Loot {

void LootEnablement::Set(bool LootSwitch::*value, bool enabled) {
  loot_.*value = enabled;
  if (loot_.Enabled() == isKnownEnabled_) return;
  LogAlways("Loot %s", loot_.Enabled() ? "enabled" : "disabled");
  newPlayerChest_.Schedule();
  client_.Publish("/tav-loot/v1/enabled", ResourceEventType::kUpdate, loot_.Enabled());
  if (views_.HasMenus()) publisher_.Request();
  isKnownEnabled_ = loot_.Enabled();
}

}  // namespace Kest::Client::Loot
