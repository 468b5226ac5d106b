// Why an item of the player's loot is as it is, or why there is none of that id; see explainer.h.
#pragma once

#include <string>

#include "binding/tree/binding_property.h"
#include "loot/calls/forward.h"

namespace Kest::Client::Loot {

BindingProperty ExplainItem(const std::string& lootId, const LootState& state,
                            const LootInventory& inventory, const LootRetrieval& retrieval,
                            const LootSwitch& loot);

}  // namespace Kest::Client::Loot
