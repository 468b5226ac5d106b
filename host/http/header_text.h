// Parts of the strings that requests consist of.
#pragma once

#include <string_view>

namespace Kest::Host {

// Removes the part of `*text` up to the first `separator` and returns what precedes that.
std::string_view TakeUpTo(char separator, std::string_view* text);

// Whether they are equal but for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

}  // namespace Kest::Host
