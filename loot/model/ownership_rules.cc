#include "loot/model/ownership_rules.h"

#include "loot/model/decimal_string.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {

using Api::ItemOwnershipStatus;
using Api::RedeemableStatus;

Reasoned<ItemOwnershipStatus> OwnershipOf(const Api::CollectionsOwnership& ownership) {
  if (ownership.owned) return {ItemOwnershipStatus::kOwned, "The player owns it."};
  if (ownership.rental.rented) return {ItemOwnershipStatus::kRental, "The player has rented it."};
  if (ownership.freeToPlayReward) {
    return {ItemOwnershipStatus::kFree, "The player has it as a free-to-play reward."};
  }
  return {ItemOwnershipStatus::kNone, "The player neither owns nor rents it."};
}

Reasoned<ItemOwnershipStatus> OwnershipOf(Api::InventoryOwnership ownership) {
  switch (ownership) {
    case Api::InventoryOwnership::kRented:
      return {ItemOwnershipStatus::kRental, "The player has rented it."};
    case Api::InventoryOwnership::kF2p:
      return {ItemOwnershipStatus::kFree, "The player has it as a free-to-play reward."};
    default:
      return {ItemOwnershipStatus::kOwned, "The player owns it."};
  }
}

Reasoned<ItemOwnershipStatus> OwnershipIf(bool isOwned) {
  if (isOwned) return {ItemOwnershipStatus::kOwned, "The player owns it."};
  return {ItemOwnershipStatus::kNone, "The player does not own it."};
}

Reasoned<RedeemableStatus> RedeemableStatusOf(const Api::PlayerLoot& item) {
  constexpr int32_t kNoStoreItem = -1;
  const bool rental = IsRentalType(item.type);
  if (item.storeItemId == kNoStoreItem) {
    return {rental ? RedeemableStatus::kNotRedeemableRental : RedeemableStatus::kNotRedeemable,
            "Its definition names no store item that it could be redeemed for."};
  }
  if (item.itemStatus == ItemOwnershipStatus::kOwned) {
    return {RedeemableStatus::kAlreadyOwned, "The player owns already what it unlocks."};
  }
  if (rental && item.itemStatus == ItemOwnershipStatus::kRental) {
    return {RedeemableStatus::kAlreadyRented, "The player rents already what it unlocks."};
  }
  return {rental ? RedeemableStatus::kRedeemableRental : RedeemableStatus::kRedeemable,
          "The player does not have yet what it unlocks."};
}

Conditions<2> OfferConditions(const Api::PlayerLoot& item) {
  const bool isRedeemable = item.redeemableStatus == RedeemableStatus::kRedeemable ||
                            item.redeemableStatus == RedeemableStatus::kRedeemableRental;
  return {{{"isRedeemable", isRedeemable, "Its status is a redeemable one.",
            "Its status is not a redeemable one."},
           {"isOfRedeemedType", Contains(kContextMenuTypes, item.type),
            "Items of its type can be redeemed.", "Items of its type are never redeemed."}}};
}

void MarkRedeemed(Api::PlayerLoot* item) {
  if (!Contains(kOwnableTypes, item->type)) return;
  const bool rental = IsRentalType(item->type);
  item->itemStatus = rental ? ItemOwnershipStatus::kRental : ItemOwnershipStatus::kOwned;
  item->redeemableStatus =
      rental ? RedeemableStatus::kAlreadyRented : RedeemableStatus::kAlreadyOwned;
}

Reasoned<bool> IsValidRecord(const SVDS::PlayerLootDTO& record,
                             const SVDS::LootItemClientDTO* definition) {
  if (definition == nullptr) return {false, "There is no definition of its loot name."};
  if (!Contains(kChampionTokenTypes, definition->type)) return {true, "It has a definition."};
  if (!record.refId.empty() && IsAllDigits(record.refId)) {
    return {true, "It has a definition, and its reference id names a champion."};
  }
  return {false, "A champion token needs a reference id of digits, which names its champion."};
}

}  // namespace Kest::Client::Loot
