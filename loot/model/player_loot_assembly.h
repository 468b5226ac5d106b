// PlayerLootAssembly assembles the published item from the player's record, its definition, the
// recipes that take it, the player's collection and the game data. Threads: module tasks only.
#pragma once

#include "loot/model/collection_status.h"
#include "loot/model/collections.h"
#include "loot/model/game_data.h"
#include "loot/model/loot_definitions.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class PlayerLootAssembly {
 public:
  // Borrows both; they outlive it.
  PlayerLootAssembly(const Collections& collections, GameData& gameData)
      : gameData_(gameData), collectionStatus_(collections, gameData) {}

  // Assembles `*item` by the recipes and its definition. `*item` is a copy of the stored item of
  // that loot id, or empty when there is none: it keeps a better disenchant value, a known upgrade
  // essence, statuses without a collection entry, and `isNew`. `trace` may be null; it gets the
  // steps, and nothing is logged then.
  void Create(const RecipeIndex& recipes, const SVDS::PlayerLootDTO& record,
              const SVDS::LootItemClientDTO& definition, Api::PlayerLoot* item,
              DecisionTrace* trace = nullptr) const;

  // Assembles ownership, artwork and redeemability again, after a change of the collections.
  void ApplyCollectionStatus(Api::PlayerLoot* item) const { collectionStatus_.Apply(item); }

 private:
  const GameData& gameData_;
  CollectionStatus collectionStatus_;
};

}  // namespace Kest::Client::Loot
