// Strings in headers.
#pragma once

#include <string_view>

namespace Kest::Host {

// Whether they are equal but for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

}  // namespace Kest::Host
