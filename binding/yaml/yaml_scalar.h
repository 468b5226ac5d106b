// What the scalars of a YAML text stand for.
#pragma once

#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/tree_builder.h"

namespace Kest {

// In both, `tag` is the whole name of an explicit tag, else null; a plain scalar is neither quoted
// nor a block.

// Adds the scalar's value. False: `context` has failed, or the builder is at its bounds.
//
// The tags str, int, float and bool of "tag:yaml.org,2002:" say what the text is read as; numbers
// and bools by the rules of conversion (assign_scalar.h), with the path "yaml". Any other explicit
// tag, the lone "!" too, fails: "Unsupported YAML tag '%1'."
//
// Without a tag only a plain scalar is more than a string:
//   nothing, "~", "null", "Null", "NULL"                          the empty kind
//   "true", "True", "TRUE", "false", "False", "FALSE"             a bool
//   decimal digits, a sign before them or none                    unsigned, or signed after "-";
//                                                                 a float beyond 64 bits
//   a number as JSON writes it, with a fraction or an exponent    a float
// A number that fits no double fails as out of range.
bool AddYamlScalar(ConversionContext& context, std::string_view text, const char* tag, bool isPlain,
                   TreeBuilder& builder);

// Whether the scalar may name a member: a string, or a plain number, whose text is the name.
bool IsYamlKey(std::string_view text, const char* tag, bool isPlain);

}  // namespace Kest
