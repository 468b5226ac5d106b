// Letters and digits of ASCII, in every locale of the process.
#pragma once

#include <algorithm>
#include <string_view>

namespace Kest {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether the two differ at most in the case of ASCII letters.
inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return ToLower(left) == ToLower(right); });
}

}  // namespace Kest
