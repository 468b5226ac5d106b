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
  const ResourceChange change =
      client_.MakeChange("/tav-loot/v1/enabled", ResourceEventType::kUpdate, loot_.Enabled());
  LogAlways("Loot %s", loot_.Enabled() ? "enabled" : "disabled");
  newPlayerChest_.Schedule();
  if (views_.HasMenus()) publisher_.Request();
  // What needs memory is done; from inside the publication the host may change a switch again.
  isKnownEnabled_ = loot_.Enabled();
  client_.Publish(change);
}

}  // namespace Kest::Client::Loot
