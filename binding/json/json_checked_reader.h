// The pass over JSON text that has the verdict.
#pragma once

#include <cstddef>
#include <string_view>

#include "binding/tree/tree_builder.h"

namespace Kest {

struct JsonFailure {
  std::string_view message;  // empty: none
  size_t offset = 0;         // in the text
};

// Feeds `builder`, which is new, with any document, every check on, and so finds what is wrong
// first; then the builder is of no more use. Throws std::bad_alloc only.
JsonFailure ReadJsonChecked(TreeBuilder& builder, std::string_view text);

}  // namespace Kest
