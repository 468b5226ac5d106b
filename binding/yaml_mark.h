// Places in a YAML text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Kest {

// A place as messages give it: both from zero, columns in characters. CR LF, CR, LF, NEL, LS and PS
// end a line, as they do for libyaml.
struct YamlMark {
  size_t line = 0;
  size_t column = 0;
};

// The mark of the character at byte `offset` of a valid UTF-8 text.
YamlMark MarkAt(std::string_view text, size_t offset);

// The offset of the first line beginning with "%" that has `most` such lines before it.
std::optional<size_t> FindDirectiveBeyond(std::string_view text, size_t most);

}  // namespace Kest
