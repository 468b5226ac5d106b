#include "loot/model/collection_status.h"

#include <string_view>

#include "loot/model/decimal_string.h"
#include "loot/model/loot_constants.h"
#include "loot/model/ownership_rules.h"

namespace Kest::Client::Loot {

using Api::ItemOwnershipStatus;
using Api::PlayerLoot;
using Api::RedeemableStatus;

namespace {

constexpr int64_t kSkinsPerChampion = 1000;  // the base skin's id is the champion's times this

void SetItemStatus(ItemOwnershipStatus status, PlayerLoot* item) {
  item->itemStatus = status;
  item->redeemableStatus = RedeemableStatusOf(*item);
}

void SetOwnedOrNot(bool owned, PlayerLoot* item) {
  SetItemStatus(owned ? ItemOwnershipStatus::kOwned : ItemOwnershipStatus::kNone, item);
}

void CopySkinDisplay(const Api::CollectionsChampionSkinMinimal& skin, PlayerLoot* item) {
  item->itemDesc = skin.name;
  item->tilePath = skin.tilePath;
  item->splashPath = skin.splashPath;
}

}  // namespace

struct CollectionStatus::TypeRule {
  std::string_view type;
  Rule rule;
};

const CollectionStatus::TypeRule CollectionStatus::kTypeRules[] = {
    {kChampion, &CollectionStatus::ApplyChampion},
    {kChampionRental, &CollectionStatus::ApplyChampion},
    {kSkin, &CollectionStatus::ApplySkin},
    {kSkinRental, &CollectionStatus::ApplySkin},
    {kChroma, &CollectionStatus::KeepAsItIs},
    {kChromaRental, &CollectionStatus::KeepAsItIs},
    {kWardSkin, &CollectionStatus::ApplyWardSkin},
    {kWardSkinRental, &CollectionStatus::ApplyWardSkin},
    {kEmote, &CollectionStatus::ApplyEmote},
    {kEmoteRental, &CollectionStatus::ApplyEmote},
    {kSummonerIcon, &CollectionStatus::ApplySummonerIcon},
    {kTournamentLogo, &CollectionStatus::ApplyTournamentLogo},
    {kBoost, &CollectionStatus::ApplyBoost},
    {kChampionToken, &CollectionStatus::ApplyChampionToken},
};

void CollectionStatus::Apply(PlayerLoot* item) const {
  for (const TypeRule& typeRule : kTypeRules) {
    if (typeRule.type == item->type) return (this->*typeRule.rule)(item);
  }
  ApplyOther(item);
}

void CollectionStatus::ApplyChampion(PlayerLoot* item) const {
  ApplyChampionOf(item->storeItemId, item);
}

void CollectionStatus::ApplySkin(PlayerLoot* item) const {
  const auto* champion = FindById(collections_.champions, item->storeItemId / kSkinsPerChampion);
  const auto* skin = FindById(collections_.skins, item->storeItemId);
  if (champion == nullptr || skin == nullptr) return;
  item->parentStoreItemId = skin->championId;
  CopySkinDisplay(*skin, item);
  item->parentItemStatus = OwnershipOf(champion->ownership);
  SetItemStatus(OwnershipOf(skin->ownership), item);
  if (item->parentItemStatus != ItemOwnershipStatus::kOwned) {
    // Last on purpose: it replaces the status even of an owned skin.
    item->redeemableStatus = RedeemableStatus::kChampionNotOwned;
  }
}

void CollectionStatus::KeepAsItIs(PlayerLoot*) const {}

void CollectionStatus::ApplyWardSkin(PlayerLoot* item) const {
  const auto* wardSkin = FindById(collections_.wardSkins, item->storeItemId);
  if (wardSkin == nullptr) return;
  item->itemDesc = wardSkin->name;
  item->tilePath = wardSkin->wardImagePath;
  item->splashPath = wardSkin->wardImagePath;
  item->shadowPath = wardSkin->wardShadowImagePath;
  SetItemStatus(OwnershipOf(wardSkin->ownership), item);
}

void CollectionStatus::ApplyEmote(PlayerLoot* item) const {
  const auto* held = FindById(collections_.emoteInventory, item->storeItemId);
  SetItemStatus(held == nullptr ? ItemOwnershipStatus::kNone : OwnershipOf(held->ownershipType),
                item);
  const auto* emote = gameData_.FindEmote(item->storeItemId);
  if (emote == nullptr) return;
  item->tilePath = emote->inventoryIcon;
  item->itemDesc = emote->name;
  item->splashPath = item->tilePath;
}

void CollectionStatus::ApplySummonerIcon(PlayerLoot* item) const {
  SetOwnedOrNot(collections_.ownedSummonerIcons.contains(item->storeItemId), item);
  item->tilePath = gameData_.GetOrAddIconPath(item->storeItemId);
  item->splashPath = item->tilePath;
}

void CollectionStatus::ApplyTournamentLogo(PlayerLoot* item) const {
  SetOwnedOrNot(collections_.ownedTournamentLogos.contains(item->storeItemId), item);
  ApplyDefaultArtwork(item);
}

void CollectionStatus::ApplyBoost(PlayerLoot* item) const {
  SetOwnedOrNot(false, item);
  ApplyDefaultArtwork(item);
}

void CollectionStatus::ApplyChampionToken(PlayerLoot* item) const {
  item->redeemableStatus = RedeemableStatus::kNotRedeemable;
  const Maybe<int32_t> championId = ReadDecimal32(item->refId);
  if (championId) ApplyChampionOf(championId.GetValue(), item);
}

void CollectionStatus::ApplyOther(PlayerLoot* item) const {
  item->redeemableStatus = RedeemableStatus::kNotRedeemable;
  ApplyDefaultArtwork(item);
}

void CollectionStatus::ApplyChampionOf(int64_t championId, PlayerLoot* item) const {
  const auto* champion = FindById(collections_.champions, championId);
  const auto* baseSkin = FindById(collections_.skins, championId * kSkinsPerChampion);
  if (champion == nullptr || baseSkin == nullptr) return;
  CopySkinDisplay(*baseSkin, item);
  SetItemStatus(OwnershipOf(champion->ownership), item);
}

void CollectionStatus::ApplyDefaultArtwork(PlayerLoot* item) const {
  if (const auto* described = gameData_.FindLootItem(item->lootId)) {
    item->tilePath = described->image;
  } else {
    item->tilePath.assign("/fe/tav-loot/assets/loot_item_icons/");
    item->tilePath.append(item->asset.empty() ? item->lootName : item->asset);
    item->tilePath.append(".png");
  }
  item->splashPath = item->tilePath;
}

}  // namespace Kest::Client::Loot
