// The loot service's craft: ingredients in, rolled outputs out.
#pragma once

#include "host/world/data/seeded_random.h"
#include "host/world/input/document.h"
#include "host/world/loot/transaction.h"

namespace Kest::Host {

// Carries out `request` (recipeName, lootNameRefIds, repeat) on `inventory`. Status words besides
// "OK": "INVALID_REQUEST", "INVALID_RECIPE" (no such recipe), "INVALID_INGREDIENTS" (they do not
// fit the slots, or have different reference ids), "MISSING_INGREDIENTS" (the player holds fewer),
// "INVENTORY_FULL" (a count would leave 32 bits). Any of these leaves everything as it was.
Transaction Craft(const WorldData& data, const Document& request, Inventory& inventory,
                  const PlatformCollections& collections, SeededRandom& random);

}  // namespace Kest::Host
