// The fast pass over JSON text.
#pragma once

#include <string_view>

#include "binding/tree/tree_builder.h"

namespace Kest {

// Feeds `builder`, which is new, with a document that is an object or an array. False: something in
// the text is not in order, is beyond a bound, or is left to the pass with every check
// (json_checked_reader.h), which has the verdict on it; then the builder is of no more use. Reads
// nothing beyond the text, and copies what it keeps. Throws std::bad_alloc only.
bool TryScanJson(TreeBuilder& builder, std::string_view text);

}  // namespace Kest
