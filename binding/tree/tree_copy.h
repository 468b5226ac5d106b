// Measuring a part of a tree, and repeating it within the same tree. Both are loops.
#pragma once

#include <cstddef>

#include "binding/tree/tree_nodes.h"

namespace Kest {

struct TreeExtent {
  size_t values = 1;  // the part itself and all below it
  size_t depth = 0;   // containers on the longest way down, the part itself included
};

TreeExtent MeasureTree(TreeNodes::Bits tree);

// Copies a part of the tree that `arena` stores, so that either may change without the other. Texts
// and names never change: they are shared. The copy's values are not counted. False past the
// arena's bound.
bool TryCopyTree(TreeNodes::Bits tree, Arena& arena, TreeNodes::Bits* copy);

}  // namespace Kest
