#include "binding/tree/tree_builder.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "binding/tree/tree_copy.h"

namespace Kest {
namespace {

constexpr size_t kFirstChildren = 32;
constexpr size_t kFirstDepth = 16;

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
  if (!arena_->TryChargeValues(values) || !TryCopyTree(value, *arena_, &copy)) return false;
  children_.emplace_back(copy, key_);
  return true;
}

bool TreeBuilder::Begin(bool isStructure) {
  if (!arena_->TryChargeValues(1)) return false;
  if (children_.capacity() == 0) {
    children_.reserve(kFirstChildren);
    open_.reserve(kFirstDepth);
  }
  open_.emplace_back(children_.size(), key_, isStructure);
  keys_.MoveCursor(key_, KeyTable::kOnEntry);
  return true;
}

// Replaces the children of the innermost container by the container.
void TreeBuilder::End(TreeNodes::Bits bits) {
  const size_t first = open_.back().first;
  key_ = open_.back().key;
  open_.pop_back();
  children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(first), children_.end());
  children_.emplace_back(bits, key_);
  keys_.MoveCursor(key_, KeyTable::kPastEntry);
}

bool TreeBuilder::EndCollection() {
  const Child* children = children_.data() + open_.back().first;
  const size_t count = children_.size() - open_.back().first;
  auto* elements =
      static_cast<BindingProperty*>(arena_->TryAllocate(count * sizeof(BindingProperty)));
  if (elements == nullptr) return false;
  for (size_t i = 0; i < count; ++i) TreeNodes::Place(elements + i, children[i].bits, *arena_);
  End(TreeNodes::Elements(elements, count));
  return true;
}

bool TreeBuilder::EndStructure() {
  const size_t first = open_.back().first;
  const size_t count = MergeRepeatedMembers(first);
  MemberNode* members = TreeNodes::TryAllocateMembers(*arena_, count);
  if (members == nullptr) return false;
  const Child* children = children_.data() + first;
  for (size_t i = 0; i < count; ++i) {
    TreeNodes::PlaceMember(members, i, count, children[i].bits, keys_.Key(children[i].key),
                           *arena_);
  }
  End(TreeNodes::Members(members, count));
  return true;
}

// Gives each repeated name the value of its last and the place of its first member; returns how
// many members stay.
size_t TreeBuilder::MergeRepeatedMembers(size_t first) {
  Child* children = children_.data() + first;
  const size_t count = children_.size() - first;
  // Names are numbered as they come, so those of most structures rise: then none is repeated.
  const auto isNoRise = [](const Child& left, const Child& right) { return left.key >= right.key; };
  if (std::adjacent_find(children, children + count, isNoRise) == children + count) return count;
  keys_.BeginPlaces();
  uint32_t kept = 0;
  for (size_t i = 0; i < count; ++i) {
    const uint32_t place = keys_.FindSlot(children[i].key, kept);
    if (place != i) children[place] = children[i];
    if (place == kept) ++kept;
  }
  return kept;
}

std::string_view TreeBuilder::ErrorMessage() const {
  return "Too many values.";
}

TreeNodes::Bits TreeBuilder::TakeBits() {
  assert(open_.empty() && children_.size() == 1);
  keys_.Refund(*arena_);
  return children_.front().bits;
}

BindingProperty TreeBuilder::Take() {
  const TreeNodes::Bits bits = TakeBits();
  ownsArena_ = false;
  return TreeNodes::Root(bits, std::exchange(arena_, nullptr));
}

}  // namespace Kest
