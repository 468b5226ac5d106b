// The constants of the loot service: loot types, fixed ids, recipe types, result codes, and the
// groups and orders they form. An item's type is a string; an unknown one is legal, belongs to no
// group and is sorted before all listed ones.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Kest::Client::Loot {

inline constexpr std::string_view kChest = "CHEST";
inline constexpr std::string_view kChampion = "CHAMPION";
inline constexpr std::string_view kChampionRental = "CHAMPION_RENTAL";
inline constexpr std::string_view kSkin = "SKIN";
inline constexpr std::string_view kSkinRental = "SKIN_RENTAL";
inline constexpr std::string_view kChroma = "CHROMA";
inline constexpr std::string_view kChromaRental = "CHROMA_RENTAL";
inline constexpr std::string_view kWardSkin = "WARDSKIN";
inline constexpr std::string_view kWardSkinRental = "WARDSKIN_RENTAL";
inline constexpr std::string_view kEmote = "EMOTE";
inline constexpr std::string_view kEmoteRental = "EMOTE_RENTAL";
inline constexpr std::string_view kSummonerIcon = "SUMMONERICON";
inline constexpr std::string_view kTournamentLogo = "TOURNAMENTLOGO";
inline constexpr std::string_view kBoost = "BOOST";
inline constexpr std::string_view kMaterial = "MATERIAL";
inline constexpr std::string_view kCurrency = "CURRENCY";
inline constexpr std::string_view kChampionToken = "CHAMPION_TOKEN";

// The inventory type of the signed token; unlike the loot type it has an underscore.
inline constexpr std::string_view kTournamentLogoInventory = "TOURNAMENT_LOGO";

inline constexpr std::string_view kChampionEssence = "CURRENCY_champion";
inline constexpr std::string_view kCosmeticEssence = "CURRENCY_cosmetic";

inline constexpr std::string_view kDisenchant = "DISENCHANT";
inline constexpr std::string_view kUpgrade = "UPGRADE";

inline constexpr std::string_view kNotDone = "NOT_DONE";
inline constexpr std::string_view kSubmitted = "SUBMITTED";
inline constexpr std::string_view kLootDisabled = "LOOT_DISABLED";
inline constexpr std::string_view kTooFrequent = "TOO_FREQUENT";
inline constexpr std::string_view kSuccess = "SUCCESS";
inline constexpr std::string_view kRequestedAsync = "REQUESTED_ASYNC";
inline constexpr std::string_view kOk = "OK";
inline constexpr std::string_view kLootService = "loot";

// Orders: first listed sorts first.
inline constexpr std::array kTypeCategoryOrder = {kChest, kChampion, kSkin,
                                                  kEmote, kWardSkin, kSummonerIcon};
inline constexpr std::array kLootDeltaTypeOrder = {
    kChampion,   kSkin,         kChroma,         kWardSkin, kChampionRental,
    kSkinRental, kChromaRental, kWardSkinRental, kMaterial, kSummonerIcon,
    kEmote,      kEmoteRental,  kBoost,          kCurrency};

// Groups: tested for membership only.
inline constexpr std::array kOwnableTypes = {
    kChampion, kChampionRental, kSkin,         kSkinRental,     kChroma, kChromaRental,
    kWardSkin, kWardSkinRental, kSummonerIcon, kTournamentLogo, kEmote};
inline constexpr std::array kContextMenuTypes = {
    kChampion, kChampionRental, kSkin,         kSkinRental,     kChroma, kChromaRental,
    kWardSkin, kWardSkinRental, kSummonerIcon, kTournamentLogo, kEmote,  kBoost};
inline constexpr std::array kCurrencyLootIds = {kChampionEssence, kCosmeticEssence};
inline constexpr std::array<std::string_view, 2> kTokenUpgradeRecipeTypes = {"TOKENSHARDUPGRADE",
                                                                             "TOKENESSENCEUPGRADE"};
inline constexpr std::array kChampionTokenTypes = {kChampionToken};
inline constexpr std::array<std::string_view, 2> kNewPlayerChestIds = {"CHEST_day_one",
                                                                       "CHEST_new_player"};

// True when `group` holds exactly `value`.
bool Contains(std::span<const std::string_view> group, std::string_view value);

// True when the type ends in "_RENTAL", and, because the test has always been made on unsigned
// positions, also for every type of exactly six characters ("CHROMA").
bool IsRentalType(std::string_view type);

// The index of `value` in `order`, or -1, so that unlisted values come first.
int32_t IndexIn(std::span<const std::string_view> order, std::string_view value);

// Sorts `values` by the index of each one's key; the sort is stable.
template <class T, class KeyOf = std::identity>
void SortByRank(std::span<const std::string_view> order, std::vector<T>* values, KeyOf keyOf = {}) {
  std::stable_sort(values->begin(), values->end(), [&](const T& left, const T& right) {
    return IndexIn(order, std::invoke(keyOf, left)) < IndexIn(order, std::invoke(keyOf, right));
  });
}

}  // namespace Kest::Client::Loot
