#include "binding/tree/tree_builder.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "binding/tree/tree_copy.h"

namespace Kest {
namespace {

constexpr size_t kFirstChildren = 32;

// Space for the text itself, and for its nodes while that is no great waste.
size_t FirstBytes(size_t textBytes, size_t nodesPerByte) {
  constexpr size_t kSmallTree = 512;
  constexpr size_t kMostNodeBytes = size_t{16} << 20;
  return std::min(textBytes + std::min(nodesPerByte * textBytes + kSmallTree, kMostNodeBytes),
                  kMaxTreeBytes);
}

}  // namespace

TreeBuilder::TreeBuilder(size_t textBytes, size_t nodesPerByte)
    : arena_(Arena::Create(FirstBytes(textBytes, nodesPerByte))), ownsArena_(true) {}

TreeBuilder::TreeBuilder(Arena& arena) : arena_(&arena), ownsArena_(false) {}

TreeBuilder::~TreeBuilder() {
  if (ownsArena_) Arena::DropOwner(arena_);
}

bool TreeBuilder::String(std::string_view text) {
  const char* copy = arena_->TryCopy(text);
  return copy != nullptr && StoredString({copy, text.size()});
}

bool TreeBuilder::Blob(std::span<const uint8_t> bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const char* copy = arena_->TryCopy(text);
  return copy != nullptr && Add(TreeNodes::Text(BindingKind::kBlob, {copy, text.size()}));
}

bool TreeBuilder::Repeat(TreeNodes::Bits value, size_t values) {
  TreeNodes::Bits copy;
  return arena_->TryChargeValues(values - 1) && TryCopyTree(value, *arena_, &copy) && Add(copy);
}

// Makes space for further children, and charges them all at once.
bool TreeBuilder::TryGrow() {
  const auto count = static_cast<size_t>(next_ - children_.get());
  if (count == capacity_) {
    const size_t openIndex = open_ != nullptr ? static_cast<size_t>(open_ - children_.get()) : 0;
    const size_t capacity = std::max(kFirstChildren, 2 * capacity_);
    auto larger = std::make_unique_for_overwrite<Child[]>(capacity);
    std::copy_n(children_.get(), count, larger.get());
    children_ = std::move(larger);
    capacity_ = capacity;
    next_ = children_.get() + count;
    if (open_ != nullptr) open_ = children_.get() + openIndex;
  }
  limit_ = next_ + arena_->ChargeValuesUpTo(capacity_ - count);
  return limit_ != next_;
}

// Takes the children of the innermost container away, which becomes one itself.
void TreeBuilder::End(TreeNodes::Bits bits) {
  Child* const container = open_;
  open_ = container->payload > 0 ? &children_[container->payload - 1] : nullptr;
  container->payload = bits.payload;
  container->shape = bits.shape;
  limit_ -= next_ - (container + 1);
  next_ = container + 1;
  key_ = container->key;
  keys_.MoveCursor(*key_, KeyTable::kPastEntry);
}

bool TreeBuilder::EndCollection() {
  const Child* const children = open_ + 1;
  const auto count = static_cast<size_t>(next_ - children);
  auto* elements =
      static_cast<BindingProperty*>(arena_->TryAllocate(count * sizeof(BindingProperty)));
  if (elements == nullptr) return false;
  for (size_t i = 0; i < count; ++i) TreeNodes::Place(elements + i, children[i].Bits(), *arena_);
  End(TreeNodes::Elements(elements, count));
  return true;
}

bool TreeBuilder::EndStructure() {
  Child* const children = open_ + 1;
  auto count = static_cast<size_t>(next_ - children);
  MemberNode* members = TreeNodes::TryAllocateMembers(*arena_, count);
  if (members == nullptr) return false;
  if (!PlaceMembers(members, children, count)) {
    const size_t kept = MergeRepeatedMembers(children, count);
    if (kept < count) {
      count = kept;
      members = TreeNodes::TryAllocateMembers(*arena_, count);
      if (members == nullptr) return false;
      PlaceMembers(members, children, count);
    }
  }
  TreeNodes::EnterMembers(members, 0, count, count);
  End(TreeNodes::Members(members, count));
  return true;
}

// Returns whether the names rise: they are numbered as they come, so those of most structures do,
// and then none is repeated.
inline bool TreeBuilder::PlaceMembers(MemberNode* members, const Child* children, size_t count) {
  Arena& arena = *arena_;
  uint32_t last = 0;
  bool isRising = true;
  for (const Child* const end = children + count; children != end; ++children, ++members) {
    const KeyTable::Entry& entry = *children->key;
    TreeNodes::PlaceMember(members, children->Bits(), *entry.key, arena);
    isRising &= entry.number > last;
    last = entry.number;
  }
  return isRising;
}

// Gives each repeated name the value of its last and the place of its first member; returns how
// many members stay. They stay as they are when none is repeated.
size_t TreeBuilder::MergeRepeatedMembers(Child* children, size_t count) {
  keys_.BeginSlots();
  uint32_t kept = 0;
  for (size_t i = 0; i < count; ++i) {
    const uint32_t slot = keys_.FindSlot(*children[i].key, kept);
    if (slot != i) children[slot] = children[i];
    if (slot == kept) ++kept;
  }
  return kept;
}

std::string_view TreeBuilder::ErrorMessage() const {
  return "Too many values.";
}

TreeNodes::Bits TreeBuilder::TakeBits() {
  assert(open_ == nullptr && next_ == children_.get() + 1);
  keys_.Refund(*arena_);
  arena_->RefundValues(static_cast<size_t>(limit_ - next_));
  return LastValue();
}

BindingProperty TreeBuilder::Take() {
  const TreeNodes::Bits bits = TakeBits();
  ownsArena_ = false;
  return TreeNodes::Root(bits, std::exchange(arena_, nullptr));
}

}  // namespace Kest
