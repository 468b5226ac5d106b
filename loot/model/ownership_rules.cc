#include "loot/model/ownership_rules.h"

#include "loot/model/decimal_string.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {

using Api::ItemOwnershipStatus;
using Api::RedeemableStatus;

ItemOwnershipStatus OwnershipOf(const Api::CollectionsOwnership& ownership) {
  if (ownership.owned) return ItemOwnershipStatus::kOwned;
  if (ownership.rental.rented) return ItemOwnershipStatus::kRental;
  if (ownership.freeToPlayReward) return ItemOwnershipStatus::kFree;
  return ItemOwnershipStatus::kNone;
}

ItemOwnershipStatus OwnershipOf(Api::InventoryOwnership ownership) {
  switch (ownership) {
    case Api::InventoryOwnership::kRented:
      return ItemOwnershipStatus::kRental;
    case Api::InventoryOwnership::kF2p:
      return ItemOwnershipStatus::kFree;
    default:
      return ItemOwnershipStatus::kOwned;
  }
}

RedeemableStatus RedeemableStatusOf(const Api::PlayerLoot& item) {
  constexpr int32_t kNoStoreItem = -1;
  const bool rental = IsRentalType(item.type);
  if (item.storeItemId == kNoStoreItem) {
    return rental ? RedeemableStatus::kNotRedeemableRental : RedeemableStatus::kNotRedeemable;
  }
  if (item.itemStatus == ItemOwnershipStatus::kOwned) return RedeemableStatus::kAlreadyOwned;
  if (rental && item.itemStatus == ItemOwnershipStatus::kRental) {
    return RedeemableStatus::kAlreadyRented;
  }
  return rental ? RedeemableStatus::kRedeemableRental : RedeemableStatus::kRedeemable;
}

void MarkRedeemed(Api::PlayerLoot* item) {
  if (!Contains(kOwnableTypes, item->type)) return;
  const bool rental = IsRentalType(item->type);
  item->itemStatus = rental ? ItemOwnershipStatus::kRental : ItemOwnershipStatus::kOwned;
  item->redeemableStatus =
      rental ? RedeemableStatus::kAlreadyRented : RedeemableStatus::kAlreadyOwned;
}

bool IsValidRecord(const SVDS::PlayerLootDTO& record, const SVDS::LootItemClientDTO* definition) {
  if (definition == nullptr) return false;
  if (!Contains(kChampionTokenTypes, definition->type)) return true;
  return !record.refId.empty() && IsAllDigits(record.refId);
}

}  // namespace Kest::Client::Loot
