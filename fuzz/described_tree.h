// A tree as a string that shows everything of it, to compare trees without the comparison of the
// trees themselves.
#pragma once

#include <string>

#include "binding/tree/binding_property.h"

namespace Kest::Fuzz {

enum class TreeView {
  kExact,
  // What is left when the tree went through a format and back:
  kJson,         // integers lose their sign's kind, enumerators and blobs become strings
  kMessagePack,  // enumerators become strings; integers lose their sign's kind up to 127
};

struct TreeDescription {
  std::string text;
  std::string failure;    // why the format cannot hold the tree; empty when it can
  bool repaired = false;  // a string had bytes that are not UTF-8, and the format replaces them
};

TreeDescription DescribeTree(const BindingProperty& tree, TreeView view);

inline std::string ExactTree(const BindingProperty& tree) {
  return DescribeTree(tree, TreeView::kExact).text;
}

}  // namespace Kest::Fuzz
