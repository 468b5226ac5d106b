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

void SetItemStatus(const Reasoned<ItemOwnershipStatus>& ownership, PlayerLoot* item,
                   DecisionTrace* trace) {
  item->itemStatus = ownership.value;
  const auto redeemable = RedeemableStatusOf(*item);
  item->redeemableStatus = redeemable.value;
  if (trace == nullptr) return;
  trace->Add("ownership", ownership.because, {{"itemStatus", ValueTree(ownership.value)}});
  trace->Add("redeemable", redeemable.because,
             {{"storeItemId", item->storeItemId},
              {"isRental", IsRentalType(item->type)},
              {"redeemableStatus", ValueTree(redeemable.value)}});
}

void SetRedeemableStatus(const Reasoned<RedeemableStatus>& redeemable, PlayerLoot* item,
                         DecisionTrace* trace) {
  item->redeemableStatus = redeemable.value;
  if (trace == nullptr) return;
  trace->Add("redeemable", redeemable.because, {{"redeemableStatus", ValueTree(redeemable.value)}});
}

// The entry of that id, or null.
template <class Key, class Value>
const Value* Look(const IdTable<Key, Value>& table, int64_t id, std::string_view step,
                  DecisionTrace* trace) {
  const Value* const found = FindById(table, id);
  if (trace != nullptr) {
    trace->Add(step,
               found != nullptr ? "The collections know it."
                                : "The collections do not know it, or not yet.",
               {{"id", id}, {"isFound", found != nullptr}});
  }
  return found;
}

void KeepStatuses(std::string_view reason, DecisionTrace* trace) {
  if (trace != nullptr) trace->Add("kept", reason);
}

constexpr std::string_view kNotKnownYet =
    "What it unlocks is not known, or not yet: it keeps the statuses that it had.";

void TraceArtwork(const PlayerLoot& item, std::string_view reason, DecisionTrace* trace) {
  if (trace == nullptr) return;
  trace->Add("artwork", reason,
             {{"itemDesc", item.itemDesc},
              {"tilePath", item.tilePath},
              {"splashPath", item.splashPath},
              {"shadowPath", item.shadowPath}});
}

void CopySkinDisplay(const Api::CollectionsChampionSkinMinimal& skin, PlayerLoot* item,
                     DecisionTrace* trace) {
  item->itemDesc = skin.name;
  item->tilePath = skin.tilePath;
  item->splashPath = skin.splashPath;
  TraceArtwork(*item, "It shows the skin.", trace);
}

}  // namespace

struct CollectionStatus::TypeRule {
  std::string_view type;
  std::string_view name;
  Rule rule;
};

const CollectionStatus::TypeRule CollectionStatus::kTypeRules[] = {
    {kChampion, "champion", &CollectionStatus::ApplyChampion},
    {kChampionRental, "champion", &CollectionStatus::ApplyChampion},
    {kSkin, "skin", &CollectionStatus::ApplySkin},
    {kSkinRental, "skin", &CollectionStatus::ApplySkin},
    {kChroma, "chroma", &CollectionStatus::KeepAsItIs},
    {kChromaRental, "chroma", &CollectionStatus::KeepAsItIs},
    {kWardSkin, "wardSkin", &CollectionStatus::ApplyWardSkin},
    {kWardSkinRental, "wardSkin", &CollectionStatus::ApplyWardSkin},
    {kEmote, "emote", &CollectionStatus::ApplyEmote},
    {kEmoteRental, "emote", &CollectionStatus::ApplyEmote},
    {kSummonerIcon, "summonerIcon", &CollectionStatus::ApplySummonerIcon},
    {kTournamentLogo, "tournamentLogo", &CollectionStatus::ApplyTournamentLogo},
    {kBoost, "boost", &CollectionStatus::ApplyBoost},
    {kChampionToken, "championToken", &CollectionStatus::ApplyChampionToken},
};

const CollectionStatus::TypeRule CollectionStatus::kOtherRule = {
    {}, "other", &CollectionStatus::ApplyOther};

void CollectionStatus::Apply(PlayerLoot* item, DecisionTrace* trace) const {
  const TypeRule* chosen = &kOtherRule;
  for (const TypeRule& typeRule : kTypeRules) {
    if (typeRule.type != item->type) continue;
    chosen = &typeRule;
    break;
  }
  if (trace != nullptr) {
    trace->Add("type", "The type decides which rule the item follows.",
               {{"type", item->type}, {"rule", chosen->name}});
  }
  (this->*chosen->rule)(item, trace);
}

void CollectionStatus::ApplyChampion(PlayerLoot* item, DecisionTrace* trace) const {
  ApplyChampionOf(item->storeItemId, item, trace);
}

void CollectionStatus::ApplySkin(PlayerLoot* item, DecisionTrace* trace) const {
  const auto* champion =
      Look(collections_.champions, item->storeItemId / kSkinsPerChampion, "champion", trace);
  const auto* skin = Look(collections_.skins, item->storeItemId, "skin", trace);
  if (champion == nullptr || skin == nullptr) return KeepStatuses(kNotKnownYet, trace);
  item->parentStoreItemId = skin->championId;
  CopySkinDisplay(*skin, item, trace);
  const auto parent = OwnershipOf(champion->ownership);
  item->parentItemStatus = parent.value;
  if (trace != nullptr) {
    trace->Add("parent", parent.because,
               {{"parentStoreItemId", item->parentStoreItemId},
                {"parentItemStatus", ValueTree(parent.value)}});
  }
  SetItemStatus(OwnershipOf(skin->ownership), item, trace);
  if (item->parentItemStatus != ItemOwnershipStatus::kOwned) {
    // Last on purpose: it replaces the status even of an owned skin.
    SetRedeemableStatus({RedeemableStatus::kChampionNotOwned,
                         "The player does not own its champion, which counts before all else."},
                        item, trace);
  }
}

void CollectionStatus::KeepAsItIs(PlayerLoot*, DecisionTrace* trace) const {
  KeepStatuses("Items of its type keep the statuses that they had.", trace);
}

void CollectionStatus::ApplyWardSkin(PlayerLoot* item, DecisionTrace* trace) const {
  const auto* wardSkin = Look(collections_.wardSkins, item->storeItemId, "wardSkin", trace);
  if (wardSkin == nullptr) return KeepStatuses(kNotKnownYet, trace);
  item->itemDesc = wardSkin->name;
  item->tilePath = wardSkin->wardImagePath;
  item->splashPath = wardSkin->wardImagePath;
  item->shadowPath = wardSkin->wardShadowImagePath;
  TraceArtwork(*item, "It shows the ward skin.", trace);
  SetItemStatus(OwnershipOf(wardSkin->ownership), item, trace);
}

void CollectionStatus::ApplyEmote(PlayerLoot* item, DecisionTrace* trace) const {
  const auto* held = Look(collections_.emoteInventory, item->storeItemId, "emote", trace);
  SetItemStatus(held == nullptr ? OwnershipIf(false) : OwnershipOf(held->ownershipType), item,
                trace);
  const auto* emote = gameData_.FindEmote(item->storeItemId);
  if (emote == nullptr) return TraceArtwork(*item, "The game data has no such emote.", trace);
  item->tilePath = emote->inventoryIcon;
  item->itemDesc = emote->name;
  item->splashPath = item->tilePath;
  TraceArtwork(*item, "It shows the emote of the game data.", trace);
}

void CollectionStatus::ApplySummonerIcon(PlayerLoot* item, DecisionTrace* trace) const {
  SetItemStatus(OwnershipIf(collections_.ownedSummonerIcons.contains(item->storeItemId)), item,
                trace);
  item->tilePath = gameData_.GetOrAddIconPath(item->storeItemId);
  item->splashPath = item->tilePath;
  TraceArtwork(*item, "It shows the icon of the game data, if that has a path.", trace);
}

void CollectionStatus::ApplyTournamentLogo(PlayerLoot* item, DecisionTrace* trace) const {
  SetItemStatus(OwnershipIf(collections_.ownedTournamentLogos.contains(item->storeItemId)), item,
                trace);
  ApplyDefaultArtwork(item, trace);
}

void CollectionStatus::ApplyBoost(PlayerLoot* item, DecisionTrace* trace) const {
  SetItemStatus({ItemOwnershipStatus::kNone, "A boost is never owned."}, item, trace);
  ApplyDefaultArtwork(item, trace);
}

void CollectionStatus::ApplyChampionToken(PlayerLoot* item, DecisionTrace* trace) const {
  SetRedeemableStatus({RedeemableStatus::kNotRedeemable,
                       "A token is not redeemable, unless its champion is known."},
                      item, trace);
  const Maybe<int32_t> championId = ReadDecimal32(item->refId);
  if (championId) return ApplyChampionOf(championId.GetValue(), item, trace);
  KeepStatuses("Its reference id is no champion's id.", trace);
}

void CollectionStatus::ApplyOther(PlayerLoot* item, DecisionTrace* trace) const {
  SetRedeemableStatus({RedeemableStatus::kNotRedeemable, "Items of its type are never redeemed."},
                      item, trace);
  ApplyDefaultArtwork(item, trace);
}

void CollectionStatus::ApplyChampionOf(int64_t championId, PlayerLoot* item,
                                       DecisionTrace* trace) const {
  const auto* champion = Look(collections_.champions, championId, "champion", trace);
  const auto* baseSkin =
      Look(collections_.skins, championId * kSkinsPerChampion, "baseSkin", trace);
  if (champion == nullptr || baseSkin == nullptr) return KeepStatuses(kNotKnownYet, trace);
  CopySkinDisplay(*baseSkin, item, trace);
  SetItemStatus(OwnershipOf(champion->ownership), item, trace);
}

void CollectionStatus::ApplyDefaultArtwork(PlayerLoot* item, DecisionTrace* trace) const {
  const auto* described = gameData_.FindLootItem(item->lootId);
  if (described != nullptr) {
    item->tilePath = described->image;
  } else {
    item->tilePath.assign("/fe/tav-loot/assets/loot_item_icons/");
    item->tilePath.append(item->asset.empty() ? item->lootName : item->asset);
    item->tilePath.append(".png");
  }
  item->splashPath = item->tilePath;
  TraceArtwork(*item,
               described != nullptr ? "It shows the image of the game data."
                                    : "The game data has no image of it: it shows a file named "
                                      "after its asset or loot name.",
               trace);
}

}  // namespace Kest::Client::Loot
