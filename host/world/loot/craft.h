// The loot service's craft: ingredients in, rolled or prepared outputs out.
#pragma once

#include "host/world/data/seeded_random.h"
#include "host/world/input/document.h"
#include "host/world/loot/prepared_results.h"
#include "host/world/loot/transaction.h"

namespace Kest::Host {

// Carries out `request` (recipeName, lootNameRefIds, repeat) on `inventory`. Status words besides
// "OK": "INVALID_REQUEST", "INVALID_RECIPE" (no such recipe), "INVALID_INGREDIENTS" (they do not
// fit the slots, or have different reference ids), "MISSING_INGREDIENTS" (the player holds fewer),
// "INVENTORY_FULL" (a count would leave 32 bits). Any of these leaves everything as it was. Where a
// result is prepared for the recipe it is given, in place of what would be rolled, and used up.
Transaction Craft(const WorldData& data, const Document& request, Inventory& inventory,
                  const PlatformCollections& collections, PreparedResults& prepared,
                  SeededRandom& random);

}  // namespace Kest::Host
