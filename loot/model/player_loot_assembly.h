// PlayerLootAssembly makes the published item out of the player's record, its definition, the
// recipes that take it, the player's collection and the game data.
// Threads: no lock; handlers and module tasks only.
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
  // Borrows all three; they outlive it.
  PlayerLootAssembly(const LootDefinitions& definitions, const Collections& collections,
                     GameData& gameData)
      : definitions_(definitions), gameData_(gameData), collectionStatus_(collections, gameData) {}

  // Fills `*item`, which is a copy of the stored item of that loot id, or empty when there is none:
  // a better disenchant value, a known upgrade essence and statuses without a collection entry are
  // kept from it, as is `isNew`.
  void Create(const SVDS::PlayerLootDTO& record, const SVDS::LootItemClientDTO& definition,
              Api::PlayerLoot* item) const;

  // Applies ownership, artwork and redeemability again, for items in the store whose collection has
  // changed.
  void ApplyCollectionStatus(Api::PlayerLoot* item) const { collectionStatus_.Apply(item); }

 private:
  void ApplyRecipes(Api::PlayerLoot* item) const;

  const LootDefinitions& definitions_;
  const GameData& gameData_;
  CollectionStatus collectionStatus_;
};

}  // namespace Kest::Client::Loot
