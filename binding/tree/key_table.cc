#include "binding/tree/key_table.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "binding/tree/seeded_hash.h"

namespace Kest {

KeyTable::Entry* KeyTable::TryFind(std::string_view name, Form form, Arena& arena) {
  if (size_t{2} * (count_ + 1) >= slots_.size() && !TryGrow(arena)) return nullptr;
  const uint32_t mask = static_cast<uint32_t>(slots_.size() - 1);
  const uint32_t hash = SeededHash(name);
  uint32_t slot = hash & mask;
  for (; slots_[slot].entry != nullptr; slot = (slot + 1) & mask) {
    if (slots_[slot].hash == hash && slots_[slot].entry->Is(name)) return slots_[slot].entry;
  }
  const MemberKey* key = TreeNodes::TryMakeKey(arena, name, hash, form != Form::kBorrowed);
  if (key == nullptr) return nullptr;
  const uint32_t expectedSize = form == Form::kVerbatim ? key->size : 0;
  void* memory = entries_.allocate(sizeof(Entry), alignof(Entry));
  auto* entry =
      new (memory) Entry{{}, key->chars, key, key->size, expectedSize, {}, ++count_, 0, 0};
  std::memcpy(entry->start, key->chars, std::min(name.size(), kNameStart));
  entry->next[kPastEntry] = entry->next[kOnEntry] = entry;
  slots_[slot] = {entry, hash};
  return entry;
}

bool KeyTable::TryGrow(Arena& arena) {
  constexpr size_t kValueBytes = 24;  // of the value that the builder keeps meanwhile
  constexpr size_t kBytesForTwoSlots = 2 * sizeof(Slot) + sizeof(Entry) + kValueBytes;
  const size_t size = std::max(kFirstSlots, 2 * slots_.size());
  const size_t bytes = (size - slots_.size()) / 2 * kBytesForTwoSlots;
  // While the slots move to twice the capacity, the old ones are still there.
  if (!arena.TryCharge(bytes + chargedBytes_)) return false;
  arena.Refund(chargedBytes_);
  chargedBytes_ += bytes;
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(size));
  const uint32_t mask = static_cast<uint32_t>(slots_.size() - 1);
  for (const Slot& moved : old) {
    if (moved.entry == nullptr) continue;
    uint32_t slot = moved.hash & mask;
    while (slots_[slot].entry != nullptr) slot = (slot + 1) & mask;
    slots_[slot] = moved;
  }
  return true;
}

}  // namespace Kest
