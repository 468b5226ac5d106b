// YAML text to trees.
#pragma once

#include <cstddef>
#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

// Longer texts are refused with "YAML text is too large." before they are looked at: libyaml's time
// grows faster than the text, and so it does with nesting and directives.
inline constexpr size_t kMaxYamlBytes = size_t{1} << 20;
// Containers inside of each other, those that an alias brings along counted too.
inline constexpr size_t kMaxYamlDepth = 128;
// Lines that begin with "%", wherever they are.
inline constexpr size_t kMaxYamlDirectives = 64;
// Of the tags of all containers, each written out with what its directive puts in front of it, as
// libyaml does; more count as too large a text.
inline constexpr size_t kMaxYamlTagBytes = 16 * kMaxYamlBytes;

// Reads a stream of one document, or of none, which gives an empty value. Mappings become
// structures (of members of one name the last value counts, in the place of the first; "<<" is a
// name like any other), sequences collections, scalars what yaml_scalar.h says. An alias becomes a
// copy of what its anchor names; tags of mappings and sequences mean nothing. One byte-order mark
// in front is skipped. On failure returns an empty value.
//
// Failures, with lines and columns counted from zero:
//   "YAML parser error: %1. At line: %2 col: %3"      %1 libyaml's words
//   those of yaml_messages.h, and of conversion for numbers and bools after a tag
//   "Too many values. At line: %1 col: %2"            tested before an alias is copied
//   "Out of memory"
BindingProperty ReadYaml(ConversionContext& context, std::string_view text);

}  // namespace Kest
