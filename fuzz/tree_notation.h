// Trees from fuzzed bytes, in a notation that people can read and libFuzzer can edit: any bytes are
// a tree, and most edits of one are small edits of the other.
//
//   n t f         empty, true, false
//   i-5; u5; d2.5;   signed, unsigned and floating-point numbers: decimal, and what strtod takes
//   D + 8 bytes   a double by its bits, low byte first
//   stext; bbytes;   text, blob; a backslash takes the next byte as it is
//   e1;           an enumerator
//   [ ... ]       a collection
//   {name:value ... }   a structure; names are cut to seven bits, so that they stay different in
//   JSON
//
// All other bytes are skipped. What the text leaves open is closed; a text of nothing is empty.
#pragma once

#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Fuzz {

// Takes one value off `*text`. Enumerators are of type `enumeration`.
BindingProperty TakeTree(std::string_view* text, const TypeRecord& enumeration);

}  // namespace Kest::Fuzz
