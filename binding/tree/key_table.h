// The names met while one tree is built, each stored once.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "binding/tree/tree_nodes.h"

namespace Kest {

// Numbers the distinct names. Structures of one type come with the same names in the same order, so
// the table first compares with the name that came last time at the same place: after the previous
// one, or first inside a member's value. Only when that misses is the name hashed.
// Threads: one.
class KeyTable {
 public:
  // Sets `*number` to that of `name`, which is copied into `arena` when new unless `isStored` says
  // it is there. False past the arena's bound; the table is charged to the arena until Refund.
  bool TryIntern(std::string_view name, bool isStored, Arena& arena, uint32_t* number) {
    if (!entries_.empty()) {
      const uint32_t guess = entries_[previous_].next[place_];
      if (entries_[guess].Is(name)) {
        *number = guess;
        MoveCursor(guess, kPastEntry);
        return true;
      }
    }
    return TryFind(name, isStored, arena, number);
  }
  // The name that is expected next; empty before there is any.
  std::string_view Expected() const {
    if (entries_.empty()) return {};
    const Entry& entry = entries_[entries_[previous_].next[place_]];
    return {entry.chars, entry.size};
  }
  // Takes it. REQUIRES: there is one.
  uint32_t TakeExpected() {
    const uint32_t number = entries_[previous_].next[place_];
    MoveCursor(number, kPastEntry);
    return number;
  }
  void Refund(Arena& arena) { arena.Refund(std::exchange(chargedBytes_, 0)); }
  const MemberKey& Key(uint32_t number) const { return *entries_[number].key; }

  // The position of the next name, by which it is guessed.
  enum Place : uint32_t { kPastEntry, kOnEntry };
  void MoveCursor(uint32_t number, Place place) {
    previous_ = number;
    place_ = place;
  }

  // Forgets the slots of all names.
  void BeginPlaces() { ++round_; }
  // The slot of a name: that of the last call of this round, else `next`, which it then keeps.
  uint32_t FindSlot(uint32_t number, uint32_t next) {
    Entry& entry = entries_[number];
    if (entry.round == round_) return entry.place;
    entry.round = round_;
    entry.place = next;
    return next;
  }

 private:
  struct Entry {
    const char* chars;  // the key's: a comparison need not load the key
    const MemberKey* key;
    uint32_t size;
    uint32_t next[2];  // by Place: the names that came last time
    uint32_t round;    // in which `place` was set
    uint32_t place;

    bool Is(std::string_view name) const {
      return name.size() == size && EqualBytes(name.data(), chars, size);
    }
  };

  // Holds the hash, too: names that differ are distinguished without loading the entry.
  struct Slot {
    uint32_t entry = 0;  // its number + 1; 0: the slot is free
    uint32_t hash = 0;
  };

  bool TryFind(std::string_view name, bool isStored, Arena& arena, uint32_t* number);
  bool TryFindNumber(std::string_view name, bool isStored, Arena& arena, uint32_t* number);
  bool TryGrow(Arena& arena);

  std::vector<Entry> entries_;
  std::vector<Slot> slots_;  // open hash table; a power of two of them
  uint32_t previous_ = 0;
  Place place_ = kOnEntry;
  uint32_t round_ = 0;
  size_t chargedBytes_ = 0;
};

}  // namespace Kest
