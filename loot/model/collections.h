// What the sibling plugins report about the player's collection. Each response of a source
// replaces its table, and each such change increments the revision. Threads: module tasks only.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "loot/model/id_table.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

struct Collections {
  IdTable<int32_t, Api::CollectionsChampionMinimal> champions;
  IdTable<int32_t, Api::CollectionsChampionSkinMinimal> skins;
  IdTable<int64_t, Api::CollectionsWardSkin> wardSkins;
  IdTable<int64_t, Api::CollectionsEmote> emoteInventory;
  std::unordered_set<int32_t> ownedSummonerIcons;
  std::unordered_set<int32_t> ownedTournamentLogos;

  void ReplaceChampions(std::vector<Api::CollectionsChampionMinimal> records);
  void ReplaceSkins(std::vector<Api::CollectionsChampionSkinMinimal> records);
  void ReplaceWardSkins(std::vector<Api::CollectionsWardSkin> records);
  void ReplaceEmoteInventory(std::vector<Api::CollectionsEmote> records);
  void ReplaceOwnedSummonerIcons(const Api::CollectionsSummonerIcons& owned);
  // The logos are read one by one.
  void ClearTournamentLogos();
  void AddTournamentLogo(int32_t id);

  uint64_t revision() const { return revision_; }

 private:
  uint64_t revision_ = 0;
};

}  // namespace Kest::Client::Loot
