// LootInventory has the rules by which the store changes: what a retrieval, a transaction and a
// data source do to it. The caller requests the publication. Threads: module tasks only; it never
// waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "loot/model/player_loot_assembly.h"
#include "loot/state/inventory_replacement.h"
#include "loot/state/loot_state.h"
#include "loot/state/pace.h"

namespace Kest::Client::Loot {

class LootInventory {
 public:
  // Borrows the state, which outlives it. `itemsInSlice`: see InventoryReplacement.
  explicit LootInventory(LootState& state, size_t itemsInSlice = kItemsInSlice);

  // Begins to replace the definitions, and all items by those of `records`.
  InventoryReplacement Replace(std::vector<SVDS::PlayerLootDTO> records,
                               LootDefinitionsPointer definitions);

  // Adds `delta` to the count of the item that `record` names. An item whose count
  // becomes 0 is removed; an unknown one is created from its definition, when there is one. A
  // positive delta marks the item as new. A delta of 0 does nothing; a count outside int32 is
  // clamped with a warning.
  void ApplyDelta(const SVDS::PlayerLootDTO& record, int64_t delta);

  // Replaces `*item`, which names its loot, by the stored item; by a new one of count 0 if only its
  // definition is known; otherwise leaves it.
  void Refresh(Api::PlayerLoot* item) const;

  // Marks the stored item as owned or rented after it was redeemed.
  void MarkRedeemed(std::string_view lootName);

  // Clears the item's mark as new. False: it is not stored.
  bool ClearNewMark(const std::string& lootId);

  // The item of a record, assembled from scratch as a retrieval does it. REQUIRES: the record is
  // valid.
  Api::PlayerLoot Assemble(const SVDS::PlayerLootDTO& record, DecisionTrace* trace) const;

  // Assembles the collection status of every item again.
  void ReassembleAll();

 private:
  LootState& state_;
  const size_t itemsInSlice_;
  PlayerLootAssembly assembly_;
};

}  // namespace Kest::Client::Loot
