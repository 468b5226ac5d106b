#include "loot/model/collections.h"

#include <utility>

namespace Kest::Client::Loot {

void Collections::ReplaceChampions(std::vector<Api::CollectionsChampionMinimal> records) {
  RefillTable(std::move(records), &Api::CollectionsChampionMinimal::id, &champions);
  ++revision_;
}

void Collections::ReplaceSkins(std::vector<Api::CollectionsChampionSkinMinimal> records) {
  RefillTable(std::move(records), &Api::CollectionsChampionSkinMinimal::id, &skins);
  ++revision_;
}

void Collections::ReplaceWardSkins(std::vector<Api::CollectionsWardSkin> records) {
  RefillTable(std::move(records), &Api::CollectionsWardSkin::id, &wardSkins);
  ++revision_;
}

void Collections::ReplaceEmoteInventory(std::vector<Api::CollectionsEmote> records) {
  RefillTable(std::move(records), &Api::CollectionsEmote::itemId, &emoteInventory);
  ++revision_;
}

void Collections::ReplaceOwnedSummonerIcons(const Api::CollectionsSummonerIcons& owned) {
  ownedSummonerIcons = {owned.icons.begin(), owned.icons.end()};
  ++revision_;
}

void Collections::ClearTournamentLogos() {
  ownedTournamentLogos.clear();
  ++revision_;
}

void Collections::AddTournamentLogo(int32_t id) {
  ownedTournamentLogos.insert(id);
  ++revision_;
}

}  // namespace Kest::Client::Loot
