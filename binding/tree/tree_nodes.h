// The storage layout of trees, shared by the files that build and walk them.
//
// A container's entries are one array in the arena. A structure of a capacity above
// kLinearMembers has an index in front of the array; smaller ones are searched from end to end.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

#include "base/word_scan.h"
#include "binding/tree/arena.h"
#include "binding/tree/binding_property.h"

namespace Kest {

// A member's name. One key may serve many structures of its tree.
struct MemberKey {
  const char* chars;
  uint32_t size;
  uint32_t hash;  // SeededHash of the name

  std::string_view Name() const { return {chars, size}; }
  bool Is(std::string_view name) const {
    return name.size() == size && EqualBytes(name.data(), chars, size);
  }
};

struct MemberNode {
  BindingProperty value;
  const MemberKey* key;
};

inline constexpr size_t kLinearMembers = 16;

struct TreeNodes {
  using Bits = BindingProperty::Bits;

  // The bits of each kind. Strings, blobs and entries must be stored in the tree's arena.
  static Bits Bool(bool value) { return Of(BindingKind::kBool, value); }
  static Bits Signed(int64_t value) {
    return Of(BindingKind::kSigned, static_cast<uint64_t>(value));
  }
  static Bits Unsigned(uint64_t value) { return Of(BindingKind::kUnsigned, value); }
  static Bits Float(double value) {
    return Of(BindingKind::kFloat, std::bit_cast<uint64_t>(value));
  }
  static Bits Text(BindingKind kind, std::string_view text) {
    return Of(kind, Address(text.data()), text.size());
  }
  static Bits Enum(const TypeRecord& type, int32_t value) {
    return Of(BindingKind::kEnum, Address(&type), static_cast<uint32_t>(value));
  }
  // `capacityBits` 0: the capacity is the size.
  static Bits Elements(const BindingProperty* elements, size_t size, size_t capacityBits = 0) {
    return Of(BindingKind::kCollection, Address(elements), size, capacityBits);
  }
  static Bits Members(const MemberNode* members, size_t size, size_t capacityBits = 0) {
    return Of(BindingKind::kStructure, Address(members), size, capacityBits);
  }

  // Makes a node of a tree at `at`. Nodes are never destroyed: they own nothing.
  static void Place(BindingProperty* at, Bits bits, Arena& arena) {
    auto* node = new (at) BindingProperty();
    node->bits_ = bits;
    node->arena_ = reinterpret_cast<uintptr_t>(&arena);
  }
  // A root that owns the arena.
  static BindingProperty Root(Bits bits, Arena* arena) {
    BindingProperty root;
    root.bits_ = bits;
    root.arena_ = reinterpret_cast<uintptr_t>(arena) | BindingProperty::kOwns;
    return root;
  }

  static Bits BitsOf(const BindingProperty& node) { return node.bits_; }

  // Whether part of the value is stored in the arena.
  static bool UsesArena(Bits bits) {
    const BindingKind kind = bits.Kind();
    return kind >= BindingKind::kString && kind != BindingKind::kEnum && bits.Size() > 0;
  }

  // How many entries the array of a container can take.
  static size_t Capacity(Bits bits) {
    return bits.CapacityBits() == 0 ? bits.Size() : size_t{1} << bits.CapacityBits();
  }

  // A key for `name`, copied unless `isStored` says the arena keeps it; null past the arena's
  // bound.
  static const MemberKey* TryMakeKey(Arena& arena, std::string_view name, uint32_t hash,
                                     bool isStored);
  // An array for `capacity` members with an empty index where one is due; null past the arena's
  // bound.
  static MemberNode* TryAllocateMembers(Arena& arena, size_t capacity) {
    if (capacity > kLinearMembers) return TryAllocateIndexed(arena, capacity);
    return static_cast<MemberNode*>(arena.TryAllocate(capacity * sizeof(MemberNode)));
  }
  // Makes a member at `at`, a place of such an array.
  // REQUIRES: `key` is stored in the arena and names no other member of the array.
  static void PlaceMember(MemberNode* at, Bits bits, const MemberKey& key, Arena& arena) {
    Place(&at->value, bits, arena);
    at->key = &key;
  }
  // Enters members from `first` up to `end` into the index of an array of that capacity, if it has
  // one.
  static void EnterMembers(MemberNode* members, size_t first, size_t end, size_t capacity) {
    if (capacity > kLinearMembers) {
      for (size_t i = first; i < end; ++i) Enter(members, i);
    }
  }
  // The position of the member of that name, or `count`.
  static size_t FindPosition(const MemberNode* members, size_t count, size_t capacity,
                             std::string_view name);

  // As structure.FindMember, where most names are where the hint says. REQUIRES: a structure.
  static const BindingProperty* FindMember(const BindingProperty& structure, std::string_view name,
                                           size_t* hint) {
    const size_t position = *hint;
    if (position < structure.bits_.Size()) {
      const MemberNode& member = structure.Members()[position];
      if (member.key->Is(name)) {
        *hint = position + 1;
        return &member.value;
      }
    }
    return structure.FindMember(name, hint);
  }

 private:
  static Bits Of(BindingKind kind, uint64_t payload, uint64_t size = 0, uint64_t capacityBits = 0) {
    return {payload, size | static_cast<uint64_t>(kind) << 32 | capacityBits << 40};
  }
  static uint64_t Address(const void* memory) { return reinterpret_cast<uintptr_t>(memory); }
  static MemberNode* TryAllocateIndexed(Arena& arena, size_t capacity);
  static void Enter(MemberNode* members, size_t position);
};

}  // namespace Kest
