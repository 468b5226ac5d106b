#include "binding/tree/tree_nodes.h"

#include <bit>
#include <cstring>

#include "binding/tree/seeded_hash.h"

namespace Kest {
namespace {

// Stands in front of an indexed array of members. `slots` is an open hash table of positions + 1.
struct alignas(8) MemberIndex {
  uint32_t* slots;
  uint32_t mask;
};

MemberIndex& IndexOf(const MemberNode* members) {
  char* start = const_cast<char*>(reinterpret_cast<const char*>(members));
  return *reinterpret_cast<MemberIndex*>(start - sizeof(MemberIndex));
}

}  // namespace

const MemberKey* TreeNodes::TryMakeKey(Arena& arena, std::string_view name, uint32_t hash,
                                       bool isStored) {
  const char* chars = isStored ? name.data() : arena.TryCopy(name);
  void* memory = arena.TryAllocate(sizeof(MemberKey));
  if (chars == nullptr || memory == nullptr) return nullptr;
  return new (memory) MemberKey{chars, static_cast<uint32_t>(name.size()), hash};
}

MemberNode* TreeNodes::TryAllocateIndexed(Arena& arena, size_t capacity) {
  const size_t slots = std::bit_ceil(capacity + capacity / 2);
  const size_t arrayBytes = sizeof(MemberIndex) + capacity * sizeof(MemberNode);
  auto* memory = static_cast<char*>(arena.TryAllocate(arrayBytes + slots * sizeof(uint32_t)));
  if (memory == nullptr) return nullptr;
  auto* table = reinterpret_cast<uint32_t*>(memory + arrayBytes);
  std::memset(table, 0, slots * sizeof(uint32_t));
  new (memory) MemberIndex{table, static_cast<uint32_t>(slots - 1)};
  return reinterpret_cast<MemberNode*>(memory + sizeof(MemberIndex));
}

void TreeNodes::Enter(MemberNode* members, size_t position) {
  MemberIndex& index = IndexOf(members);
  uint32_t slot = members[position].key->hash & index.mask;
  while (index.slots[slot] != 0) slot = (slot + 1) & index.mask;
  index.slots[slot] = static_cast<uint32_t>(position + 1);
}

size_t TreeNodes::FindPosition(const MemberNode* members, size_t count, size_t capacity,
                               std::string_view name) {
  if (capacity <= kLinearMembers) {
    size_t position = 0;
    while (position < count && !members[position].key->Is(name)) ++position;
    return position;
  }
  const MemberIndex& index = IndexOf(members);
  const uint32_t hash = SeededHash(name);
  for (uint32_t slot = hash & index.mask; index.slots[slot] != 0; slot = (slot + 1) & index.mask) {
    const size_t position = index.slots[slot] - 1;
    const MemberKey& key = *members[position].key;
    if (key.hash == hash && key.Is(name)) return position;
  }
  return count;
}

}  // namespace Kest
