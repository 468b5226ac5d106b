// The dynamic value that crosses every edge: a scalar, a string, bytes, an enumerator, an ordered
// collection, or a structure of named members.
#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>

#include "binding/types/type_id.h"

namespace Kest {

class Arena;
struct MemberNode;

// The most values one tree may ever have made (copies and replaced ones count), and the most bytes
// its arena may ever have handed out; while a tree is read, the table of its distinct names counts.
// GetOrAddElement, GetOrAddMember, setters and copies throw TreeBoundExceeded beyond; readers of
// outside input stop before, with a failure message.
inline constexpr size_t kMaxTreeValues = 4'194'304;
inline constexpr size_t kMaxTreeBytes = size_t{sizeof(void*) == 8 ? 256 : 96} << 20;

class TreeBoundExceeded final : public std::bad_alloc {
 public:
  const char* what() const noexcept override { return "Too many values."; }
};

template <typename T>
concept Arithmetic = std::is_arithmetic_v<T>;

// Whether some value of From has no equal of type To. Such arguments do not compile: cast them
// where the value is known to fit.
template <typename From, typename To>
concept LossyAs = !Arithmetic<From> ||
                  std::numeric_limits<From>::digits > std::numeric_limits<To>::digits ||
                  (std::is_signed_v<From> && !std::is_signed_v<To>) ||
                  (std::is_floating_point_v<From> && !std::is_floating_point_v<To>);

// A value, or a whole tree of them. The root owns an arena in which everything below it is stored;
// a child is a node inside its parent's tree.
//
// Threads: as a standard container: many readers, or one writer.
// Lifetime: references, pointers and views into a tree live until the root is destroyed, assigned
// or moved from; but GetOrAddElement, Append and GetOrAddMember may move the elements or members of
// the very container they grow: references to those (not to what lies deeper) then dangle.
// Replacing a value inside a tree frees nothing before the tree dies. Copies: deep. Assigning to a
// node inside a tree copies into that tree's arena and leaves the source alone; assigning a value
// into its own child or parent is safe. Any other move costs nothing and empties its source. A part
// that is moved out of a tree stays in that tree's arena, which lives as long as either: the two
// are then used as one value is, by many readers or one writer. Depth: unlimited; copying,
// comparing and destroying are loops.
class BindingProperty {
 public:
  BindingProperty() noexcept = default;
  BindingProperty(const BindingProperty& other);
  BindingProperty(BindingProperty&& other) noexcept;
  BindingProperty& operator=(const BindingProperty& other);
  // NOLINTNEXTLINE(performance-noexcept-move-constructor): copies into a node
  BindingProperty& operator=(BindingProperty&& other) noexcept(false);
  ~BindingProperty() { Release(); }

  static BindingProperty FromBool(bool value);
  static BindingProperty FromBool(LossyAs<bool> auto) = delete;
  static BindingProperty FromSigned(int64_t value);
  static BindingProperty FromSigned(LossyAs<int64_t> auto) = delete;
  static BindingProperty FromUnsigned(uint64_t value);
  static BindingProperty FromUnsigned(LossyAs<uint64_t> auto) = delete;
  static BindingProperty FromFloat(double value);
  static BindingProperty FromFloat(LossyAs<double> auto) = delete;
  static BindingProperty FromString(std::string_view text);
  static BindingProperty FromBlob(std::span<const uint8_t> bytes);
  static BindingProperty FromEnum(const TypeRecord& type, int32_t value);
  static BindingProperty Collection();
  static BindingProperty Structure();

  BindingKind kind() const { return bits_.Kind(); }
  bool IsEmpty() const { return bits_.Kind() == BindingKind::kEmpty; }

  // REQUIRES: the kind that is asked for.
  bool AsBool() const { return As(BindingKind::kBool).payload != 0; }
  int64_t AsSigned() const { return static_cast<int64_t>(As(BindingKind::kSigned).payload); }
  uint64_t AsUnsigned() const { return As(BindingKind::kUnsigned).payload; }
  double AsFloat() const { return std::bit_cast<double>(As(BindingKind::kFloat).payload); }
  std::string_view AsString() const {
    return {As(BindingKind::kString).Pointer<const char>(), bits_.Size()};
  }
  std::span<const uint8_t> AsBlob() const {
    return {As(BindingKind::kBlob).Pointer<const uint8_t>(), bits_.Size()};
  }
  const TypeRecord& EnumType() const { return *As(BindingKind::kEnum).Pointer<const TypeRecord>(); }
  int32_t EnumValue() const { return static_cast<int32_t>(As(BindingKind::kEnum).Size()); }

  // Each replaces what the value held. Setting an empty container empties a full one.
  void SetEmpty();
  void SetBool(bool value);
  void SetBool(LossyAs<bool> auto) = delete;
  void SetSigned(int64_t value);
  void SetSigned(LossyAs<int64_t> auto) = delete;
  void SetUnsigned(uint64_t value);
  void SetUnsigned(LossyAs<uint64_t> auto) = delete;
  void SetFloat(double value);
  void SetFloat(LossyAs<double> auto) = delete;
  void SetString(std::string_view text);
  void SetBlob(std::span<const uint8_t> bytes);
  void SetEnum(const TypeRecord& type, int32_t value);
  void SetCollection();
  void SetStructure();

  // Element `index`; a value that is no collection first becomes an empty one, and empty values are
  // appended until the element exists.
  BindingProperty& GetOrAddElement(size_t index);
  // A new empty element after the last one, by the same rule.
  BindingProperty& Append();
  // The member of that name; a value that is no structure first becomes an empty one, and a missing
  // member is appended, empty.
  BindingProperty& GetOrAddMember(std::string_view name);

  // Elements of a collection or members of a structure; 0 for all else.
  size_t Size() const {
    const BindingKind held = kind();
    const bool isContainer = held == BindingKind::kCollection || held == BindingKind::kStructure;
    return isContainer ? bits_.Size() : 0;
  }
  // These never change anything: null when the kind differs or there is no such element or member.
  const BindingProperty* FindElement(size_t index) const;
  const BindingProperty* FindMember(std::string_view name) const;
  // The same, looking at member `*hint` first; on success `*hint` becomes the position after the
  // one found. Asking for members in their order costs one comparison each; TreeNodes has a form of
  // it for loops.
  const BindingProperty* FindMember(std::string_view name, size_t* hint) const;
  // REQUIRES: a collection, or a structure, with more than `index` entries.
  const BindingProperty& Element(size_t index) const { return AllElements()[index]; }
  // REQUIRES: a collection.
  std::span<const BindingProperty> AllElements() const {
    return {As(BindingKind::kCollection).Pointer<const BindingProperty>(), bits_.Size()};
  }
  const BindingProperty& MemberValue(size_t index) const;
  std::string_view MemberName(size_t index) const;

  // Same kinds, same values, same sizes; members are compared by name, in any order. Signed 1
  // and unsigned 1 differ.
  friend bool operator==(const BindingProperty& left, const BindingProperty& right);

 private:
  friend struct TreeNodes;

  // A value apart from the tree it belongs to: a number, or the address of its bytes or entries,
  // and its kind. Two machine words, so that it is passed in registers.
  struct Bits {
    uint64_t payload = 0;
    uint64_t shape = 0;  // from bit 0 on: size (32), kind (8), capacityBits (8)

    BindingKind Kind() const { return static_cast<BindingKind>((shape >> 32) & 0xff); }
    // Bytes, elements or members; of an enumerator: its value.
    uint32_t Size() const { return static_cast<uint32_t>(shape); }
    // Containers: the capacity is 2^n entries when above 0, else Size().
    uint8_t CapacityBits() const { return static_cast<uint8_t>((shape >> 40) & 0xff); }
    template <typename T>
    T* Pointer() const {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): the payload of such a kind is an address
      return reinterpret_cast<T*>(static_cast<uintptr_t>(payload));
    }
  };
  static constexpr uintptr_t kOwns = 1;

  bool IsNode() const { return arena_ != 0 && (arena_ & kOwns) == 0; }
  Arena* TreeArena() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address and a flag
    return reinterpret_cast<Arena*>(arena_ & ~kOwns);
  }
  const Bits& As(BindingKind asked) const {
    assert(bits_.Kind() == asked);
    return static_cast<void>(asked), bits_;
  }
  BindingProperty* Elements() const { return bits_.Pointer<BindingProperty>(); }
  MemberNode* Members() const { return bits_.Pointer<MemberNode>(); }
  Arena& NeedArena();
  void Release() noexcept;
  void Replace(Bits bits);
  void StoreBytes(BindingKind kind, std::string_view bytes);
  void CopyFrom(const BindingProperty& other);
  void ReserveElements(size_t capacity);
  void ReserveMembers(size_t capacity);

  Bits bits_;
  uintptr_t arena_ = 0;  // the tree's Arena; kOwns is set when this value owns it
};

}  // namespace Kest
