// The loot service's redeem: one item out of the inventory, its thing into the collections.
#pragma once

#include "host/world/input/document.h"
#include "host/world/loot/transaction.h"

namespace Kest::Host {

// Carries out `request` (lootName). A rental makes the thing rented, any other item owned; a boost
// is used up. Status words besides "OK": "INVALID_REQUEST", "MISSING_LOOT" (the player holds none),
// "NOT_REDEEMABLE", "ALREADY_OWNED", "ALREADY_RENTED", "CHAMPION_NOT_OWNED". Any of these leaves
// everything as it was.
Transaction Redeem(const WorldData& data, const Document& request, Inventory& inventory,
                   PlatformCollections& collections);

}  // namespace Kest::Host
