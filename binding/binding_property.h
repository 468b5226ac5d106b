// The dynamic value that crosses every edge: a scalar, a text, bytes, an enumerator, an ordered
// collection, or a structure of named members.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "binding/type_id.h"

namespace Kest {

class Arena;
struct MemberNode;

// The most values one tree may ever have made (copies and replaced ones count), and the most bytes
// its arena may ever have handed out. TakeElement, TakeMember, setters and copies throw
// std::bad_alloc beyond; whoever reads outside input stops before, with a failure text.
inline constexpr size_t kMaxTreeValues = 4'194'304;
inline constexpr size_t kMaxTreeBytes = (sizeof(void*) == 8 ? 256u : 96u) * 1024u * 1024u;

// A value, or a whole tree of them. The root owns an arena in which everything below it is stored;
// a child is a node inside its parent's tree.
//
// Threads:  as a standard container: many readers, or one writer.
// Lifetime: references, pointers and views into a tree live until the root is destroyed, assigned
// or
//           moved from... except that TakeElement, Append and TakeMember may move the elements or
//           members of the very container they grow: references to those (not to what lies deeper)
//           then dangle. Replacing a value frees nothing before the tree dies.
// Copies:   deep. Assigning to a node inside a tree copies into that tree's arena; assigning a
// value
//           into its own child or parent is safe. Moving a root into a root costs nothing; any
//           other move is a copy.
// Depth:    unlimited; copying, comparing and destroying are loops.
class BindingProperty {
 public:
  BindingProperty() noexcept = default;
  BindingProperty(const BindingProperty& other);
  BindingProperty(BindingProperty&& other) noexcept;
  BindingProperty& operator=(const BindingProperty& other);
  BindingProperty& operator=(BindingProperty&& other) noexcept(false);  // NOLINT: may copy
  ~BindingProperty() { Release(); }

  static BindingProperty FromBool(bool value);
  static BindingProperty FromSigned(int64_t value);
  static BindingProperty FromUnsigned(uint64_t value);
  static BindingProperty FromFloat(double value);
  static BindingProperty FromString(std::string_view text);
  static BindingProperty FromBlob(std::span<const uint8_t> bytes);
  static BindingProperty FromEnum(const TypeRecord& type, int32_t value);
  static BindingProperty Collection();
  static BindingProperty Structure();

  BindingKind kind() const { return kind_; }
  bool IsEmpty() const { return kind_ == BindingKind::kEmpty; }

  // REQUIRES: the kind that is asked for.
  bool AsBool() const { return payload_.boolean; }
  int64_t AsSigned() const { return payload_.signedNumber; }
  uint64_t AsUnsigned() const { return payload_.unsignedNumber; }
  double AsFloat() const { return payload_.number; }
  std::string_view AsString() const { return {payload_.chars, size_}; }
  std::span<const uint8_t> AsBlob() const { return {payload_.bytes, size_}; }
  const TypeRecord& EnumType() const { return *payload_.enumType; }
  int32_t EnumValue() const { return static_cast<int32_t>(size_); }

  // Each replaces what the value held. Setting an empty container empties a full one.
  void SetEmpty();
  void SetBool(bool value);
  void SetSigned(int64_t value);
  void SetUnsigned(uint64_t value);
  void SetFloat(double value);
  void SetString(std::string_view text);
  void SetBlob(std::span<const uint8_t> bytes);
  void SetEnum(const TypeRecord& type, int32_t value);
  void SetCollection();
  void SetStructure();

  // Element `index`; a value that is no collection first becomes an empty one, and empty values are
  // appended until the element exists.
  BindingProperty& TakeElement(size_t index);
  // A new empty element behind the last one, by the same rule.
  BindingProperty& Append();
  // The member of that name; a value that is no structure first becomes an empty one, and a missing
  // member is appended, empty.
  BindingProperty& TakeMember(std::string_view name);

  // Elements of a collection or members of a structure; 0 for all else.
  size_t Size() const;
  // These never change anything: null when the kind differs or there is no such element or member.
  const BindingProperty* FindElement(size_t index) const;
  const BindingProperty* FindMember(std::string_view name) const;
  // The same, looking at member `*hint` first; on success `*hint` becomes the place behind the one
  // found. Asking for members in their order costs one comparison each.
  const BindingProperty* FindMember(std::string_view name, size_t* hint) const;
  // REQUIRES: a collection, or a structure, with more than `index` entries.
  const BindingProperty& Element(size_t index) const;
  const BindingProperty& MemberValue(size_t index) const;
  std::string_view MemberName(size_t index) const;

  // Same kinds, same values, same sizes; members are compared by name, in whatever order. Signed 1
  // and unsigned 1 differ.
  friend bool operator==(const BindingProperty& left, const BindingProperty& right);

 private:
  friend class TreeBuilder;
  friend struct TreeNodes;

  union Payload {
    uint64_t unsignedNumber = 0;
    int64_t signedNumber;
    bool boolean;
    double number;
    const char* chars;
    const uint8_t* bytes;
    const TypeRecord* enumType;
    BindingProperty* elements;
    MemberNode* members;
  };

  void Release() noexcept;

  Payload payload_;
  uintptr_t arena_ = 0;  // the tree's Arena; the lowest bit is set when this value owns it
  BindingKind kind_ = BindingKind::kEmpty;
  uint8_t capacityBits_ = 0;  // containers: room for 2^n entries when above 0, else exactly size_
  uint32_t size_ = 0;         // bytes, elements or members; of an enumerator: its value
};

}  // namespace Kest
