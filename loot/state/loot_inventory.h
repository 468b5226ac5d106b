// LootInventory holds the rules by which the store changes: what a retrieval, a transaction and a
// data source do to it. Whoever calls them requests the publication. Threads: no lock; handlers and
// module tasks only. It never waits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "loot/model/player_loot_assembly.h"
#include "loot/state/loot_state.h"

namespace Kest::Client::Loot {

class LootInventory {
 public:
  // Borrows the state, which outlives it.
  explicit LootInventory(LootState& state);

  // Puts the items of `records` in the place of all that is stored, each built afresh. A record
  // that is not valid is logged and left out.
  void Replace(const std::vector<SVDS::PlayerLootDTO>& records);

  // Null, with a warning, when the store does not hold the item.
  Api::PlayerLootPointer FindByName(std::string_view lootName, std::string_view refId) const;

  // Adds `delta` to the count of the item that `record` names. An item that comes to 0 leaves the
  // store; an unknown one is created with that count from its definition, when there is one. A
  // positive delta marks the item as new. A delta of 0 does nothing; a count outside int32 is
  // clamped with a warning.
  void ApplyDelta(const SVDS::PlayerLootDTO& record, int64_t delta);

  // Fills `*item`, which names its loot, with the stored item; for one that is not stored, with a
  // new one of count 0 from its definition; without a definition it stays as it is.
  void Refresh(Api::PlayerLoot* item) const;

  // Marks the stored item as owned or rented after it was redeemed.
  void MarkRedeemed(std::string_view lootName);

  // Takes the mark of a new item off. False: the store does not hold it.
  bool ClearNewMark(const std::string& lootId);

  // Applies what the collections say to every item again.
  void ReassembleAll();

 private:
  LootState& state_;
  PlayerLootAssembly assembly_;
};

}  // namespace Kest::Client::Loot
