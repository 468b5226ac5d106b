#include "loot/model/collections.h"

#include <utility>

namespace Kest::Client::Loot {

void Collections::ReplaceChampions(std::vector<Api::CollectionsChampionMinimal> records) {
  RefillTable(std::move(records), &Api::CollectionsChampionMinimal::id, &champions);
}

void Collections::ReplaceSkins(std::vector<Api::CollectionsChampionSkinMinimal> records) {
  RefillTable(std::move(records), &Api::CollectionsChampionSkinMinimal::id, &skins);
}

void Collections::ReplaceWardSkins(std::vector<Api::CollectionsWardSkin> records) {
  RefillTable(std::move(records), &Api::CollectionsWardSkin::id, &wardSkins);
}

void Collections::ReplaceEmoteInventory(std::vector<Api::CollectionsEmote> records) {
  RefillTable(std::move(records), &Api::CollectionsEmote::itemId, &emoteInventory);
}

void Collections::ReplaceOwnedSummonerIcons(const Api::CollectionsSummonerIcons& owned) {
  ownedSummonerIcons = {owned.icons.begin(), owned.icons.end()};
}

}  // namespace Kest::Client::Loot
