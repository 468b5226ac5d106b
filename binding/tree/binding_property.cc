#include "binding/tree/binding_property.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <new>
#include <string>
#include <utility>

#include "binding/tree/arena.h"
#include "binding/tree/seeded_hash.h"
#include "binding/tree/tree_builder.h"
#include "binding/tree/tree_nodes.h"
#include "binding/tree/value_writer.h"

namespace Kest {
namespace {

constexpr size_t kFirstCapacity = 4;
constexpr size_t kFirstArenaBytes = 128;

std::string_view Text(std::span<const uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

uint8_t CapacityBits(size_t capacity) {
  return static_cast<uint8_t>(std::countr_zero(capacity));
}

}  // namespace

BindingProperty::BindingProperty(const BindingProperty& other) {
  CopyFrom(other);
}

BindingProperty::BindingProperty(BindingProperty&& other) noexcept
    : bits_(std::exchange(other.bits_, Bits())) {
  if (!other.IsNode()) {
    arena_ = std::exchange(other.arena_, 0);
  } else if (TreeNodes::UsesArena(bits_)) {
    other.TreeArena()->AddOwner();
    arena_ = other.arena_ | kOwns;
  }
}

BindingProperty& BindingProperty::operator=(const BindingProperty& other) {
  if (this != &other) CopyFrom(other);
  return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): copies into a node
BindingProperty& BindingProperty::operator=(BindingProperty&& other) noexcept(false) {
  if (this == &other) return *this;
  if (IsNode()) {
    CopyFrom(other);
  } else {
    BindingProperty taken(std::move(other));  // it may be a part of what goes
    std::swap(bits_, taken.bits_);
    std::swap(arena_, taken.arena_);
  }
  return *this;
}

BindingProperty BindingProperty::FromBool(bool value) {
  BindingProperty property;
  property.SetBool(value);
  return property;
}
BindingProperty BindingProperty::FromSigned(int64_t value) {
  BindingProperty property;
  property.SetSigned(value);
  return property;
}
BindingProperty BindingProperty::FromUnsigned(uint64_t value) {
  BindingProperty property;
  property.SetUnsigned(value);
  return property;
}
BindingProperty BindingProperty::FromFloat(double value) {
  BindingProperty property;
  property.SetFloat(value);
  return property;
}
BindingProperty BindingProperty::FromString(std::string_view text) {
  BindingProperty property;
  property.SetString(text);
  return property;
}
BindingProperty BindingProperty::FromBlob(std::span<const uint8_t> bytes) {
  BindingProperty property;
  property.SetBlob(bytes);
  return property;
}
BindingProperty BindingProperty::FromEnum(const TypeRecord& type, int32_t value) {
  BindingProperty property;
  property.SetEnum(type, value);
  return property;
}
BindingProperty BindingProperty::Collection() {
  BindingProperty property;
  property.SetCollection();
  return property;
}
BindingProperty BindingProperty::Structure() {
  BindingProperty property;
  property.SetStructure();
  return property;
}

void BindingProperty::SetEmpty() {
  Replace(Bits());
}
void BindingProperty::SetBool(bool value) {
  Replace(TreeNodes::Bool(value));
}
void BindingProperty::SetSigned(int64_t value) {
  Replace(TreeNodes::Signed(value));
}
void BindingProperty::SetUnsigned(uint64_t value) {
  Replace(TreeNodes::Unsigned(value));
}
void BindingProperty::SetFloat(double value) {
  Replace(TreeNodes::Float(value));
}
void BindingProperty::SetString(std::string_view text) {
  StoreBytes(BindingKind::kString, text);
}
void BindingProperty::SetBlob(std::span<const uint8_t> bytes) {
  StoreBytes(BindingKind::kBlob, Text(bytes));
}
void BindingProperty::SetEnum(const TypeRecord& type, int32_t value) {
  Replace(TreeNodes::Enum(type, value));
}
void BindingProperty::SetCollection() {
  Replace(TreeNodes::Elements(nullptr, 0));
}
void BindingProperty::SetStructure() {
  Replace(TreeNodes::Members(nullptr, 0));
}

void BindingProperty::Release() noexcept {
  if ((arena_ & kOwns) == 0) return;
  Arena::DropOwner(TreeArena());
  arena_ = 0;
}

// Takes the bits by value: they may be in the arena that goes.
void BindingProperty::Replace(Bits bits) {
  Release();
  bits_ = bits;
}

void BindingProperty::StoreBytes(BindingKind kind, std::string_view bytes) {
  if (IsNode()) {
    Replace(TreeNodes::Text(kind, {TreeArena()->Copy(bytes), bytes.size()}));
    return;
  }
  if (bytes.empty()) return Replace(TreeNodes::Text(kind, ""));
  Arena* arena = Arena::Create(bytes.size());
  *this = TreeNodes::Root(TreeNodes::Text(kind, {arena->Copy(bytes), bytes.size()}), arena);
}

void BindingProperty::CopyFrom(const BindingProperty& other) {
  switch (other.kind()) {
    case BindingKind::kString:
      return StoreBytes(BindingKind::kString, other.AsString());
    case BindingKind::kBlob:
      return StoreBytes(BindingKind::kBlob, Text(other.AsBlob()));
    case BindingKind::kCollection:
    case BindingKind::kStructure:
      break;
    default:
      return Replace(other.bits_);
  }
  if (IsNode()) {
    TreeBuilder builder(*TreeArena());
    if (!WriteTree(other, builder)) throw TreeBoundExceeded();
    Replace(builder.TakeBits());
  } else {
    TreeBuilder builder;
    if (!WriteTree(other, builder)) throw TreeBoundExceeded();
    *this = builder.Take();
  }
}

Arena& BindingProperty::NeedArena() {
  if (arena_ == 0) {
    arena_ = reinterpret_cast<uintptr_t>(Arena::Create(kFirstArenaBytes)) | kOwns;
  }
  return *TreeArena();
}

void BindingProperty::ReserveElements(size_t capacity) {
  if (capacity <= TreeNodes::Capacity(bits_)) return;
  capacity = std::max(kFirstCapacity, std::bit_ceil(capacity));
  Arena& arena = NeedArena();
  auto* elements =
      static_cast<BindingProperty*>(arena.Allocate(capacity * sizeof(BindingProperty)));
  const size_t size = bits_.Size();
  for (size_t i = 0; i < size; ++i) TreeNodes::Place(elements + i, Elements()[i].bits_, arena);
  bits_ = TreeNodes::Elements(elements, size, CapacityBits(capacity));
}

void BindingProperty::ReserveMembers(size_t capacity) {
  if (capacity <= TreeNodes::Capacity(bits_)) return;
  capacity = std::max(kFirstCapacity, std::bit_ceil(capacity));
  Arena& arena = NeedArena();
  MemberNode* members = TreeNodes::TryAllocateMembers(arena, capacity);
  if (members == nullptr) throw TreeBoundExceeded();
  const size_t size = bits_.Size();
  for (size_t i = 0; i < size; ++i) {
    const MemberNode& member = Members()[i];
    TreeNodes::PlaceMember(members + i, member.value.bits_, *member.key, arena);
  }
  TreeNodes::EnterMembers(members, 0, size, capacity);
  bits_ = TreeNodes::Members(members, size, CapacityBits(capacity));
}

BindingProperty& BindingProperty::GetOrAddElement(size_t index) {
  if (kind() != BindingKind::kCollection) SetCollection();
  const size_t size = bits_.Size();
  if (index < size) return Elements()[index];
  if (index >= kMaxTreeValues) throw TreeBoundExceeded();
  Arena& arena = NeedArena();
  arena.ChargeValues(index + 1 - size);
  ReserveElements(index + 1);
  for (size_t i = size; i <= index; ++i) TreeNodes::Place(Elements() + i, Bits(), arena);
  bits_ = TreeNodes::Elements(Elements(), index + 1, bits_.CapacityBits());
  return Elements()[index];
}

BindingProperty& BindingProperty::Append() {
  return GetOrAddElement(kind() == BindingKind::kCollection ? bits_.Size() : 0);
}

BindingProperty& BindingProperty::GetOrAddMember(std::string_view name) {
  if (kind() != BindingKind::kStructure) {
    const std::string kept(name);  // it may be in what is replaced
    SetStructure();
    return GetOrAddMember(kept);
  }
  const size_t size = bits_.Size();
  const size_t position =
      TreeNodes::FindPosition(Members(), size, TreeNodes::Capacity(bits_), name);
  if (position < size) return Members()[position].value;
  Arena& arena = NeedArena();
  arena.ChargeValues(1);
  const MemberKey* key = TreeNodes::TryMakeKey(arena, name, SeededHash(name), /*isStored=*/false);
  if (key == nullptr) throw TreeBoundExceeded();
  ReserveMembers(size + 1);
  TreeNodes::PlaceMember(Members() + size, Bits(), *key, arena);
  TreeNodes::EnterMembers(Members(), size, size + 1, TreeNodes::Capacity(bits_));
  bits_ = TreeNodes::Members(Members(), size + 1, bits_.CapacityBits());
  return Members()[size].value;
}

const BindingProperty* BindingProperty::FindElement(size_t index) const {
  if (kind() != BindingKind::kCollection || index >= bits_.Size()) return nullptr;
  return &Elements()[index];
}

const BindingProperty* BindingProperty::FindMember(std::string_view name) const {
  size_t hint = 0;
  return FindMember(name, &hint);
}

const BindingProperty* BindingProperty::FindMember(std::string_view name, size_t* hint) const {
  if (kind() != BindingKind::kStructure) return nullptr;
  const MemberNode* members = Members();
  const size_t size = bits_.Size();
  size_t position = *hint;
  if (position >= size || !members[position].key->Is(name)) {
    position = TreeNodes::FindPosition(members, size, TreeNodes::Capacity(bits_), name);
    if (position == size) return nullptr;
  }
  *hint = position + 1;
  return &members[position].value;
}

const BindingProperty& BindingProperty::MemberValue(size_t index) const {
  assert(kind() == BindingKind::kStructure && index < bits_.Size());
  return Members()[index].value;
}

std::string_view BindingProperty::MemberName(size_t index) const {
  assert(kind() == BindingKind::kStructure && index < bits_.Size());
  return Members()[index].key->Name();
}

}  // namespace Kest
