// The names met while one tree is built, each stored once.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "binding/tree_nodes.h"

namespace Kest {

// Numbers the distinct names. Structures of one type come with the same names in the same order, so
// the table first compares with the name that followed the previous one last time; only when that
// misses is the name hashed.
// Threads: one.
class KeyTable {
 public:
  // Sets `*number` to that of `name`, which is copied into `arena` when new unless `isStored` says
  // it lies there. False past the arena's bound.
  bool TryIntern(std::string_view name, bool isStored, Arena& arena, uint32_t* number);
  const MemberKey& Key(uint32_t number) const { return *entries_[number].key; }

  // Forgets the places of all names.
  void BeginPlaces() { ++round_; }
  // The place of a name: that of the call before in this round, else `next`, which it then keeps.
  uint32_t PlaceOf(uint32_t number, uint32_t next) {
    Entry& entry = entries_[number];
    if (entry.round == round_) return entry.place;
    entry.round = round_;
    entry.place = next;
    return next;
  }

 private:
  struct Entry {
    const MemberKey* key;
    uint32_t successor;  // the name that came next last time
    uint32_t round;      // in which `place` was set
    uint32_t place;
  };

  bool TryFind(std::string_view name, bool isStored, Arena& arena, uint32_t* number);
  void Grow();

  std::vector<Entry> entries_;
  std::vector<uint32_t> slots_;  // open hash table of numbers + 1; a power of two of them
  uint32_t previous_ = 0;
  uint32_t round_ = 0;
};

}  // namespace Kest
