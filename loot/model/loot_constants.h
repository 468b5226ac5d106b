// The words of the loot service: loot types, fixed ids, recipe types, result words, the groups they
// form and the orders they are sorted by. Items carry their type as text; a type that is none of
// these words is legal, belongs to no group and ranks before every listed word.
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

// The inventory word of the signed token; unlike the type word it holds an underscore.
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

// True when `group` holds `word`, letter for letter.
bool Contains(std::span<const std::string_view> group, std::string_view word);

// True when the type ends in "_RENTAL", and, because the test has always been made on unsigned
// positions, also for every type of exactly six characters ("CHROMA").
bool IsRentalType(std::string_view type);

// The place of `word` in `order`, or -1, so that unlisted words come first.
int32_t IndexIn(std::span<const std::string_view> order, std::string_view word);

// Sorts `values` by the rank of the text that `wordOf` finds in each; equal ranks keep their order.
template <class T, class WordOf = std::identity>
void SortByRank(std::span<const std::string_view> order, std::vector<T>* values,
                WordOf wordOf = {}) {
  std::stable_sort(values->begin(), values->end(), [&](const T& left, const T& right) {
    return IndexIn(order, std::invoke(wordOf, left)) < IndexIn(order, std::invoke(wordOf, right));
  });
}

}  // namespace Kest::Client::Loot
