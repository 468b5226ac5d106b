// Directives of a YAML text: lines that begin with "%".
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Kest {

// The line, from zero, of the first directive that has `most` others before it. Lines inside of
// scalars count, too: the text has not been parsed. CR LF, CR, LF, NEL, LS and PS end a line, as
// they do for libyaml.
std::optional<size_t> FindDirectiveBeyond(std::string_view text, size_t most);

}  // namespace Kest
