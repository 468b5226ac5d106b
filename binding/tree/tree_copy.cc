#include "binding/tree/tree_copy.h"

#include <algorithm>
#include <vector>

namespace Kest {
namespace {

using Bits = TreeNodes::Bits;

bool IsContainer(Bits bits) {
  return bits.Kind() == BindingKind::kCollection || bits.Kind() == BindingKind::kStructure;
}

BindingProperty* Entry(Bits container, size_t index) {
  if (container.Kind() == BindingKind::kCollection) {
    return container.Pointer<BindingProperty>() + index;
  }
  return &container.Pointer<MemberNode>()[index].value;
}

// A container with entries of its own, each with the bits of the other's.
bool TryCopyEntries(Bits container, Arena& arena, Bits* copy) {
  const size_t size = container.Size();
  if (container.Kind() == BindingKind::kCollection) {
    void* memory = arena.TryAllocate(size * sizeof(BindingProperty));
    if (memory == nullptr) return false;
    auto* elements = static_cast<BindingProperty*>(memory);
    for (size_t i = 0; i < size; ++i) {
      TreeNodes::Place(elements + i, TreeNodes::BitsOf(*Entry(container, i)), arena);
    }
    *copy = TreeNodes::Elements(elements, size);
    return true;
  }
  MemberNode* members = TreeNodes::TryAllocateMembers(arena, size);
  if (members == nullptr) return false;
  const auto* originals = container.Pointer<const MemberNode>();
  for (size_t i = 0; i < size; ++i) {
    TreeNodes::PlaceMember(members + i, TreeNodes::BitsOf(originals[i].value), *originals[i].key,
                           arena);
  }
  TreeNodes::EnterMembers(members, 0, size, size);
  *copy = TreeNodes::Members(members, size);
  return true;
}

}  // namespace

TreeExtent MeasureTree(Bits tree) {
  struct Part {
    Bits container;
    size_t depth;
  };
  TreeExtent extent;
  std::vector<Part> pending;
  if (IsContainer(tree)) pending.push_back({tree, 1});
  while (!pending.empty()) {
    const Part part = pending.back();
    pending.pop_back();
    const size_t size = part.container.Size();
    extent.values += size;
    extent.depth = std::max(extent.depth, part.depth);
    for (size_t i = 0; i < size; ++i) {
      const Bits entry = TreeNodes::BitsOf(*Entry(part.container, i));
      if (IsContainer(entry)) pending.push_back({entry, part.depth + 1});
    }
  }
  return extent;
}

bool TryCopyTree(Bits tree, Arena& arena, Bits* copy) {
  BindingProperty root;
  TreeNodes::Place(&root, tree, arena);
  std::vector<BindingProperty*> shared;  // containers of the copy whose entries are the original's
  if (IsContainer(tree)) shared.push_back(&root);
  while (!shared.empty()) {
    BindingProperty* node = shared.back();
    shared.pop_back();
    Bits own;
    if (!TryCopyEntries(TreeNodes::BitsOf(*node), arena, &own)) return false;
    TreeNodes::Place(node, own, arena);
    for (size_t i = 0; i < own.Size(); ++i) {
      BindingProperty* entry = Entry(own, i);
      if (IsContainer(TreeNodes::BitsOf(*entry))) shared.push_back(entry);
    }
  }
  *copy = TreeNodes::BitsOf(root);
  return true;
}

}  // namespace Kest
