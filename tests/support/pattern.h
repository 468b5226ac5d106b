// Whole-text patterns for expectations. GoogleTest's own know no sets and counts where the C
// library has no regular expressions.
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace Kest::Testing {

inline auto MatchesPattern(const std::string& pattern) {
  return ::testing::ResultOf(
      "whether it matches " + pattern,
      [regex = std::regex(pattern)](const std::string& text) {
        return std::regex_match(text, regex);
      },
      true);
}

}  // namespace Kest::Testing
