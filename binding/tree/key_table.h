// The names met while one tree is built, each stored once.
#pragma once

#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <utility>
#include <vector>

#include "binding/tree/tree_nodes.h"

namespace Kest {

// Structures of one type come with the same names in the same order, so the table expects the name
// that came last time at the same place: after the previous one, or first inside a member's value.
// Only when another one comes is it hashed.
// Threads: one.
class KeyTable {
 public:
  // A distinct name; it stays where it is.
  struct Entry {
    char start[kNameStart];  // of the name, then zeros
    const char* chars;       // the key's: a comparison need not load the key
    const MemberKey* key;
    uint32_t size;
    uint32_t expectedSize;  // 0: SizeOfExpected does not look for it
    Entry* next[2];         // by Place: the names that came last time
    uint32_t number;        // rises in the order in which the names came first
    uint32_t round;         // in which `slot` was set
    uint32_t slot;

    bool Is(std::string_view name) const {
      return name.size() == size && EqualBytes(name.data(), chars, size);
    }
  };
  // How a name is passed.
  enum class Form {
    kBorrowed,  // it is copied when it is new
    kStored,    // it is in the arena
    kVerbatim,  // also, and its characters are those of the text it was read from
  };

  KeyTable() = default;
  KeyTable(const KeyTable&) = delete;
  KeyTable& operator=(const KeyTable&) = delete;

  // The entry of the name that came; null past the arena's bound. The table is charged to the arena
  // until Refund.
  Entry* TryIntern(std::string_view name, Form form, Arena& arena) {
    Entry* entry = *cursor_;
    if (!entry->Is(name)) {
      entry = TryFind(name, form, arena);
      if (entry == nullptr) return nullptr;
      *cursor_ = entry;
    }
    MoveCursor(*entry, kPastEntry);
    return entry;
  }
  // The size of the expected name if `text` begins with it and goes on, else 0; 0 near its end,
  // too.
  size_t SizeOfExpected(std::string_view text) const {
    const Entry& entry = **cursor_;
    const size_t size = entry.expectedSize;
    if (text.size() <= kNameStart || !StartsAlike(text.data(), entry.start, size)) return 0;
    if (size <= kNameStart) return size;
    return text.size() > size && EqualBytes(text.data(), entry.chars, size) ? size : 0;
  }
  // The entry of the expected name, which came.
  Entry* TakeExpected() {
    Entry* entry = *cursor_;
    MoveCursor(*entry, kPastEntry);
    return entry;
  }
  void Refund(Arena& arena) { arena.Refund(std::exchange(chargedBytes_, 0)); }

  // Stands for the name of the root, which has none.
  Entry* Root() { return &root_; }

  // The position of the next name, by which it is guessed.
  enum Place : uint32_t { kPastEntry, kOnEntry };
  void MoveCursor(Entry& entry, Place place) { cursor_ = &entry.next[place]; }

  // Forgets the slots of all names.
  void BeginSlots() { ++round_; }
  // The slot of a name: that of the last call of this round, else `next`, which it then keeps.
  uint32_t FindSlot(Entry& entry, uint32_t next) const {
    if (entry.round == round_) return entry.slot;
    entry.round = round_;
    entry.slot = next;
    return next;
  }

 private:
  // Holds the hash, too: names that differ are distinguished without loading the entry.
  struct Slot {
    Entry* entry = nullptr;
    uint32_t hash = 0;
  };

  static constexpr size_t kFirstSlots = 64;
  static constexpr uint32_t kNoSize = UINT32_MAX;  // of no name

  Entry* TryFind(std::string_view name, Form form, Arena& arena);
  bool TryGrow(Arena& arena);

  Entry root_ = {"", "", nullptr, kNoSize, 0, {&root_, &root_}, 0, 0, 0};
  Entry** cursor_ = &root_.next[kOnEntry];
  std::pmr::monotonic_buffer_resource entries_{kFirstSlots / 2 * sizeof(Entry)};
  uint32_t count_ = 0;
  std::vector<Slot> slots_;  // open hash table; a power of two of them
  uint32_t round_ = 0;
  size_t chargedBytes_ = 0;
};

}  // namespace Kest
