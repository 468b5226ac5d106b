// The two formatters of messages: "%1" positions and "{name}" fields.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "log/format_argument.h"

namespace Kest {

inline constexpr size_t kFormatCapacity = 4096;

// Builds a text of at most 4096 bytes from a template; a longer one is cut at that byte.
//   %%        a "%"
//   %2        argument 2 (counted from 1): texts as they are, integers in decimal,
//             bools as "true" or "false", characters as such, floats as "%g", pointers as "%p"
//   %2$08x    argument 2 by a printf conversion
//   %-6s      the next argument in sequence by a printf conversion; a width or precision may be "*"
//             (the next argument) or "*2$" (argument 2)
// A number above the count of arguments is no position but the width of a conversion. Arguments
// know their types: length modifiers change nothing, "%s" takes any type in its form from above.
// Where a specification is malformed, longer than 60 characters, lacks its argument or does not fit
// it ("%d" of a text), formatting ends and what was written stays.
template <typename... Arguments>
std::string Format(std::string_view pattern, const Arguments&... arguments);

// The same with the arguments in a list.
std::string FormatList(std::string_view pattern, std::span<const FormatArgument> arguments);

struct NamedField {
  std::string_view name;
  std::string_view value;
};

// Replaces each "{name}" by its field's value, in one pass: values are not read again, unknown
// names stay as they are. The length is not limited.
std::string FormatNamed(std::string_view pattern, std::initializer_list<NamedField> fields);

template <typename... Arguments>
std::string Format(std::string_view pattern, const Arguments&... arguments) {
  if constexpr (sizeof...(arguments) == 0) {
    return FormatList(pattern, {});
  } else {
    const FormatArgument list[] = {FormatArgument(arguments)...};
    return FormatList(pattern, list);
  }
}

}  // namespace Kest
