// A second opinion on JSON text: the event reader underneath, with every check it has and nothing
// of the shortcuts around it, and the C library for the numbers.
#pragma once

#include <optional>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Fuzz {

struct StrictReading {
  // None when the text is no JSON. Numbers that no double holds are infinite here, and lone
  // surrogate escapes pass.
  std::optional<BindingProperty> tree;
  std::string_view failure;  // why there is none
  size_t offset = 0;         // where
};

StrictReading ReadStrictJson(std::string_view text);

inline bool IsStrictJson(std::string_view text) {
  return ReadStrictJson(text).tree.has_value();
}

}  // namespace Kest::Fuzz
