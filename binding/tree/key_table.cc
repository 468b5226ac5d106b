#include "binding/tree/key_table.h"

#include <algorithm>
#include <utility>

#include "binding/tree/seeded_hash.h"

namespace Kest {

bool KeyTable::TryFind(std::string_view name, bool isStored, Arena& arena, uint32_t* number) {
  if (!TryFindNumber(name, isStored, arena, number)) return false;
  entries_[previous_].next[place_] = *number;
  MoveCursor(*number, kPastEntry);
  return true;
}

bool KeyTable::TryFindNumber(std::string_view name, bool isStored, Arena& arena, uint32_t* number) {
  if (2 * entries_.size() >= slots_.size() && !TryGrow(arena)) return false;
  const uint32_t mask = static_cast<uint32_t>(slots_.size() - 1);
  const uint32_t hash = SeededHash(name);
  uint32_t slot = hash & mask;
  for (; slots_[slot].entry != 0; slot = (slot + 1) & mask) {
    if (slots_[slot].hash == hash && entries_[slots_[slot].entry - 1].Is(name)) {
      *number = slots_[slot].entry - 1;
      return true;
    }
  }
  const MemberKey* key = TreeNodes::TryMakeKey(arena, name, hash, isStored);
  if (key == nullptr) return false;
  *number = static_cast<uint32_t>(entries_.size());
  entries_.push_back({key->chars, key, key->size, {*number, *number}, 0, 0});
  slots_[slot] = {*number + 1, hash};
  return true;
}

bool KeyTable::TryGrow(Arena& arena) {
  constexpr size_t kFirstSlots = 64;
  constexpr size_t kValueBytes = 24;  // of the value that the builder keeps meanwhile
  constexpr size_t kBytesForTwoSlots = 2 * sizeof(Slot) + sizeof(Entry) + kValueBytes;
  const size_t size = std::max(kFirstSlots, 2 * slots_.size());
  const size_t bytes = (size - slots_.size()) / 2 * kBytesForTwoSlots;
  // While the slots move to twice the capacity, the old ones are still there.
  if (!arena.TryCharge(bytes + chargedBytes_)) return false;
  arena.Refund(chargedBytes_);
  chargedBytes_ += bytes;
  if (slots_.empty()) entries_.reserve(kFirstSlots / 2);
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(size));
  const uint32_t mask = static_cast<uint32_t>(slots_.size() - 1);
  for (const Slot& moved : old) {
    if (moved.entry == 0) continue;
    uint32_t slot = moved.hash & mask;
    while (slots_[slot].entry != 0) slot = (slot + 1) & mask;
    slots_[slot] = moved;
  }
  return true;
}

}  // namespace Kest
