// Trees as initialiser lists, for small documents; each level copies those below it:
//
//   const BindingProperty tree =
//       Structure{{"name", "chest"}, {"count", 3u}, {"tags", Collection{true, -2, 2.5, nullptr}}};
#pragma once

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>

#include "binding/tree/binding_property.h"

namespace Kest {

// One value: null, a bool, a number of the kind of its type, a string, or a tree.
class TreeLiteral {
 public:
  TreeLiteral(std::nullptr_t) {}
  TreeLiteral(const BindingProperty& tree) : tree_(tree) {}
  TreeLiteral(std::convertible_to<std::string_view> auto text) { tree_.SetString(text); }
  template <Arithmetic T>
  TreeLiteral(T value) {
    if constexpr (std::is_same_v<T, bool>) {
      tree_.SetBool(value);
    } else if constexpr (std::is_floating_point_v<T>) {
      tree_.SetFloat(value);
    } else if constexpr (std::is_signed_v<T>) {
      tree_.SetSigned(value);
    } else {
      tree_.SetUnsigned(value);
    }
  }

  const BindingProperty& tree() const { return tree_; }

 private:
  BindingProperty tree_;
};

struct Collection : BindingProperty {
  Collection(std::initializer_list<TreeLiteral> elements) {
    SetCollection();
    for (const TreeLiteral& element : elements) Append() = element.tree();
  }
};

struct Structure : BindingProperty {
  Structure(std::initializer_list<std::pair<std::string_view, TreeLiteral>> members) {
    SetStructure();
    for (const auto& [name, value] : members) GetOrAddMember(name) = value.tree();
  }
};

}  // namespace Kest
