#include "loot/loot_enablement.h"

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/calls/new_player_chest.h"

namespace Kest::Client::Loot {

void LootEnablement::Set(bool LootSwitch::*value, bool enabled) {
  const bool wasEnabled = loot_.Enabled();
  loot_.*value = enabled;
  if (loot_.Enabled() == wasEnabled) return;
  LogAlways("Loot %s", loot_.Enabled() ? "enabled" : "disabled");
  newPlayerChest_.Schedule();
  client_.Publish("/tav-loot/v1/enabled", ResourceEventType::kUpdate, loot_.Enabled());
}

}  // namespace Kest::Client::Loot
