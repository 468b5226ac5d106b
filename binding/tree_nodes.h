// The storage layout of trees, shared by the files that build and walk them.
//
// A container's entries are one array in the arena. A structure with room for more than
// kLinearMembers has an index in front of the array; smaller ones are searched from end to end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

#include "binding/arena.h"
#include "binding/binding_property.h"

namespace Kest {

// A member's name. One key may serve many structures of its tree.
struct MemberKey {
  const char* chars;
  uint32_t size;
  uint32_t hash;  // SeededHash of the name

  std::string_view Name() const { return {chars, size}; }
};

struct MemberNode {
  BindingProperty value;
  const MemberKey* key;
};

inline constexpr size_t kLinearMembers = 16;

struct TreeNodes {
  using Bits = BindingProperty::Bits;

  static const Bits& BitsOf(const BindingProperty& node) { return node.bits_; }

  // The bits of each kind. Texts and entries must be stored in the tree's arena.
  static Bits Bool(bool value) {
    Bits bits = Of(BindingKind::kBool);
    bits.payload.boolean = value;
    return bits;
  }
  static Bits Signed(int64_t value) {
    Bits bits = Of(BindingKind::kSigned);
    bits.payload.signedNumber = value;
    return bits;
  }
  static Bits Unsigned(uint64_t value) {
    Bits bits = Of(BindingKind::kUnsigned);
    bits.payload.unsignedNumber = value;
    return bits;
  }
  static Bits Float(double value) {
    Bits bits = Of(BindingKind::kFloat);
    bits.payload.number = value;
    return bits;
  }
  static Bits Text(BindingKind kind, std::string_view text) {
    Bits bits = Of(kind, text.size());
    bits.payload.chars = text.data();
    return bits;
  }
  static Bits Enum(const TypeRecord& type, int32_t value) {
    Bits bits = Of(BindingKind::kEnum, static_cast<uint32_t>(value));
    bits.payload.enumType = &type;
    return bits;
  }
  static Bits Elements(BindingProperty* elements, size_t size) {
    Bits bits = Of(BindingKind::kCollection, size);
    bits.payload.elements = elements;
    return bits;
  }
  static Bits Members(MemberNode* members, size_t size) {
    Bits bits = Of(BindingKind::kStructure, size);
    bits.payload.members = members;
    return bits;
  }

  // Makes a node of a tree at `at`. Nodes are never destroyed: they own nothing.
  static void Place(BindingProperty* at, const Bits& bits, Arena& arena) {
    auto* node = new (at) BindingProperty();
    node->bits_ = bits;
    node->arena_ = reinterpret_cast<uintptr_t>(&arena);
  }
  // A root that owns the arena.
  static BindingProperty Root(const Bits& bits, Arena* arena) {
    BindingProperty root;
    root.bits_ = bits;
    root.arena_ = reinterpret_cast<uintptr_t>(arena) | BindingProperty::kOwns;
    return root;
  }

  // Entries the array of a container has room for.
  static size_t Room(const Bits& bits) {
    return bits.roomBits == 0 ? bits.size : size_t{1} << bits.roomBits;
  }

  // A key for `name`, copied unless `isStored` says the arena keeps it; null past the arena's
  // bound.
  static const MemberKey* TryMakeKey(Arena& arena, std::string_view name, uint32_t hash,
                                     bool isStored);
  // An array for `room` members with an empty index where one is due; null past the arena's bound.
  static MemberNode* TryAllocateMembers(Arena& arena, size_t room);
  // Makes member `position` of an array with that room, and enters it into the index.
  // REQUIRES: `key` is stored in the arena and names no other member of the array.
  static void PlaceMember(MemberNode* members, size_t position, size_t room, const Bits& bits,
                          const MemberKey& key, Arena& arena) {
    Place(&members[position].value, bits, arena);
    members[position].key = &key;
    if (room > kLinearMembers) Enter(members, position, key);
  }
  // The position of the member of that name, or `count`.
  static size_t FindPosition(const MemberNode* members, size_t count, size_t room,
                             std::string_view name);

 private:
  static Bits Of(BindingKind kind, size_t size = 0) {
    Bits bits;
    bits.kind = kind;
    bits.size = static_cast<uint32_t>(size);
    return bits;
  }
  static void Enter(MemberNode* members, size_t position, const MemberKey& key);
};

}  // namespace Kest
