// What the sibling plugins report about the player's collection. Each table is replaced whole by an
// answer of its source and stays empty until the first one. The two tables of game data that
// assembly also reads, icon paths and emotes, are in game_data.h.
// Threads: no lock; handlers and module tasks only.
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
  std::unordered_set<int32_t> ownedTournamentLogos;  // filled by the logo load, one by one

  void ReplaceChampions(std::vector<Api::CollectionsChampionMinimal> records);
  void ReplaceSkins(std::vector<Api::CollectionsChampionSkinMinimal> records);
  void ReplaceWardSkins(std::vector<Api::CollectionsWardSkin> records);
  void ReplaceEmoteInventory(std::vector<Api::CollectionsEmote> records);
  void ReplaceOwnedSummonerIcons(const Api::CollectionsSummonerIcons& owned);
};

}  // namespace Kest::Client::Loot
