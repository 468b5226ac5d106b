// InventoryReplacement assembles all items of a retrieval again, in parts, so that other tasks run
// in between. They see the items and definitions that were there before until the last part, which
// replaces both at once. What is replaced is freed in parts, too, but for the definitions.
//
// What the items are made of may change between two parts: a source of the collection or the game
// data responds, or a publication changes which items can be shared. What was made is then made
// again; the third time it is finished within that part. Definitions are replaced by this class
// only: no two of its objects may take turns. A change of a stored item in between counts for
// nothing, since all items are replaced.
//
// Threads: module tasks only; it never waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "loot/model/player_loot_assembly.h"
#include "loot/state/loot_state.h"

namespace Kest::Client::Loot {

class InventoryReplacement {
 public:
  // The state outlives it. A part makes `itemsInSlice` items; fewer are replaced in one part. No
  // item is made of an invalid record; it is logged.
  InventoryReplacement(LootState& state, std::vector<SVDS::PlayerLootDTO> records,
                       LootDefinitionsPointer definitions, size_t itemsInSlice);

  // Does the next part. True: items and definitions are replaced. When memory runs out nothing of
  // the state has changed.
  bool Continue();
  // After that, frees a part of what is not needed any more. True: that was the last one.
  bool FreeSome() noexcept;

 private:
  // What the items made so far depend on, beside the definitions.
  struct Basis {
    uint64_t collections = 0;
    uint64_t gameData = 0;
    int64_t publication = 0;

    friend bool operator==(const Basis&, const Basis&) = default;
  };

  Basis CurrentBasis() const;
  void BeginAgain(const Basis& basis);
  void Assemble(const SVDS::PlayerLootDTO& record);

  LootState& state_;
  const PlayerLootAssembly assembly_;
  std::vector<SVDS::PlayerLootDTO> records_;
  LootDefinitionsPointer definitions_;
  const size_t itemsInSlice_;
  Basis basis_;
  PlayerLootStore::Replacement made_;
  size_t next_ = 0;    // of the records
  size_t logged_ = 0;  // records, also if they are assembled again
  int timesBegun_ = 1;
  Api::PlayerLoot scratch_;  // assigning to it keeps the capacity of its strings
};

}  // namespace Kest::Client::Loot
