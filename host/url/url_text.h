// Parts of the texts that URLs and headers consist of.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Host {

// Removes the part of `*text` up to the first `separator` and returns what precedes that.
std::string_view TakeUpTo(char separator, std::string_view* text);
// The same, without the spaces around it.
std::string_view TakeTrimmedUpTo(char separator, std::string_view* text);
// Decodes %XX; a broken escape stays as it is.
std::string DecodePercent(std::string_view text);
// Whether a "%" is not followed by two hexadecimal digits.
bool HasBrokenEscape(std::string_view text);
// All but letters, digits and "-._~" as %XX, so that it is one part of a path.
std::string EncodePercent(std::string_view text);

}  // namespace Kest::Host
