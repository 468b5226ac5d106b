// What becomes of a number in JSON text.
#pragma once

#include <string_view>

#include "binding/tree/tree_builder.h"

namespace Kest {

enum class JsonNumber {
  kAdded,
  kTooBig,   // no double holds it
  kRefused,  // by the builder, whose message says why
};

// Adds a number exactly: an integer that fits is unsigned, or signed after a minus sign; all else
// is the nearest double. REQUIRES: the text follows the grammar of JSON.
JsonNumber AddJsonNumber(TreeBuilder& builder, std::string_view text);

}  // namespace Kest
