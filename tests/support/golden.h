// Texts that are kept in files, to hold the code to what it did before.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

namespace Kest::Testing {

// Whether `text` is what the file holds; `path` starts at the root of the sources. A difference is
// shown as the lines that differ, so give each line what identifies it. `script/test --update`
// (KEST_UPDATE_GOLDEN in the environment) writes the files again: read the change before it is
// committed.
//
//   EXPECT_TRUE(GoldenText("tests/loot/wire_types.txt", text));
testing::AssertionResult GoldenText(const std::string& path, std::string_view text);

// The same for the outcomes of cases, which the file holds with their inputs. A case begins with
// why it is there; its input may have several lines, and "~x" with two digits is any byte. Lines
// between cases are comments.
//
//   # escape
//   "\u00e9"
//   => s~xC3~xA9
testing::AssertionResult GoldenCases(const std::string& path,
                                     const std::function<std::string(const std::string&)>& outcome);

// What the file holds; `path` starts at the root of the sources. Empty when it cannot be read.
std::string SourceText(const std::string& path);

}  // namespace Kest::Testing
