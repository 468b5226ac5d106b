#include <algorithm>
#include <span>
#include <vector>

#include "binding/tree/binding_property.h"

namespace Kest {
namespace {

// Two containers of one kind and size whose entries before `next` are equal.
struct Pair {
  const BindingProperty* left;
  const BindingProperty* right;
  size_t next;
  size_t hint;  // where the right structure is expected to hold the next member
};

bool EqualBlobs(std::span<const uint8_t> left, std::span<const uint8_t> right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

// Whether two values of one kind are equal; of containers only the size is looked at.
bool EqualOnSurface(const BindingProperty& left, const BindingProperty& right) {
  switch (left.kind()) {
    case BindingKind::kEmpty:
      return true;
    case BindingKind::kBool:
      return left.AsBool() == right.AsBool();
    case BindingKind::kSigned:
      return left.AsSigned() == right.AsSigned();
    case BindingKind::kUnsigned:
      return left.AsUnsigned() == right.AsUnsigned();
    case BindingKind::kFloat:
      return left.AsFloat() == right.AsFloat();
    case BindingKind::kString:
      return left.AsString() == right.AsString();
    case BindingKind::kBlob:
      return EqualBlobs(left.AsBlob(), right.AsBlob());
    case BindingKind::kEnum:
      return &left.EnumType() == &right.EnumType() && left.EnumValue() == right.EnumValue();
    default:
      return left.Size() == right.Size();
  }
}

// The entry of the right container that `pair.next` of the left one must equal, or null.
const BindingProperty* Counterpart(Pair& pair) {
  if (pair.left->kind() == BindingKind::kCollection) return pair.right->FindElement(pair.next);
  return pair.right->FindMember(pair.left->MemberName(pair.next), &pair.hint);
}

}  // namespace

bool operator==(const BindingProperty& left, const BindingProperty& right) {
  std::vector<Pair> open;
  const auto agree = [&open](const BindingProperty& one, const BindingProperty& other) {
    if (one.kind() != other.kind() || !EqualOnSurface(one, other)) return false;
    if (one.Size() > 0) open.push_back({&one, &other, 0, 0});
    return true;
  };
  if (!agree(left, right)) return false;
  while (!open.empty()) {
    Pair& pair = open.back();
    if (pair.next == pair.left->Size()) {
      open.pop_back();
      continue;
    }
    const BindingProperty& one = pair.left->kind() == BindingKind::kCollection
                                     ? pair.left->Element(pair.next)
                                     : pair.left->MemberValue(pair.next);
    const BindingProperty* other = Counterpart(pair);
    ++pair.next;
    if (other == nullptr || !agree(one, *other)) return false;
  }
  return true;
}

}  // namespace Kest
