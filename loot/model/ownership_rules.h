// How ownership, redeemability and validity of one item follow from its fields and records. Each
// decision comes with its reason.
#pragma once

#include "loot/model/condition.h"
#include "loot/model/decision_trace.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

// Owned before rented before free.
Reasoned<Api::ItemOwnershipStatus> OwnershipOf(const Api::CollectionsOwnership& ownership);

// A value outside the enumeration counts as owned.
Reasoned<Api::ItemOwnershipStatus> OwnershipOf(Api::InventoryOwnership ownership);

// What is only known to be in the collection or not.
Reasoned<Api::ItemOwnershipStatus> OwnershipIf(bool isOwned);

// From the item's store item id, item status and type.
Reasoned<Api::RedeemableStatus> RedeemableStatusOf(const Api::PlayerLoot& item);

// What an item needs so that the player is offered to redeem it.
Conditions<2> OfferConditions(const Api::PlayerLoot& item);

// Marks an item that a transaction redeemed as owned or rented. An item of a type that cannot be
// owned keeps its statuses.
void MarkRedeemed(Api::PlayerLoot* item);

// Whether a record of a retrieval may enter the store: its definition exists (`definition` is not
// null), and a champion token names its champion in digits.
Reasoned<bool> IsValidRecord(const SVDS::PlayerLootDTO& record,
                             const SVDS::LootItemClientDTO* definition);

}  // namespace Kest::Client::Loot
