// What a retrieval returns: definitions, recipes, queries and inventory.
#pragma once

#include "host/world/data/world_data.h"

namespace Kest::Host {

// A part whose version equals the one in `known` is left out: its list is empty, its version
// remains.
Json PlayerLootDefinitionsJson(const WorldData& data, const Inventory& inventory,
                               const DefinitionVersions& known);

}  // namespace Kest::Host
