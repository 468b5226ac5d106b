// The fast pass over JSON where its steps meet: each special character at each place of a string,
// and with each distance from the end of the text.
#include <gtest/gtest.h>

#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"

namespace Kest::Fuzz {
namespace {

using namespace std::string_literals;

// More than two blocks of any step.
constexpr size_t kPlaces = 70;

struct Piece {
  const char* why;
  std::string text;
  bool isRead;  // by the fast pass, inside a string
};

const Piece kPieces[] = {
    {"nothing", "", true},
    {"escapes", R"(\"\\\/\b\f\n\r\t)", true},
    {"escaped characters", R"(\u0000\u007F\u0080\u07fF\u0800\uFFFF)", true},
    {"surrogate pairs", R"(\uD800\uDC00\uDBFF\uDFFF)", true},
    {"two, three and four bytes",
     "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
    {"last control character", "\x1f", false},
    {"NUL", "\0"s, false},
    {"DEL", "\x7f", true},
    {"tab", "\t", false},
    {"no escape", "\\a", false},
    {"high surrogate alone", R"(\uD800)", false},
    {"high surrogate twice", R"(\uD800\uD800)", false},
    {"high surrogate, then a character", R"(\uDBFF\uE000)", false},
    {"high surrogate, then another escape", R"(\uDBFF\nDC00)", false},
    {"low surrogate alone", R"(\uDFFF)", false},
    {"short escape", R"(\u00)", false},
    {"no digit before A", R"(\u00@0)", false},
    {"no digit after F", R"(\u00g0)", false},
    {"no digit after 9", R"(\u00:0)", false},
    {"tail alone", "\x80", false},
    {"overlong", "\xC1\xBF", false},
    {"torn character", "\xE2\x82", false},
    {"surrogate in bytes", "\xED\xA0\x80", false},
    {"beyond the last character", "\xF4\x90\x80\x80", false},
    {"no lead", "\xFF", false},
};

bool Scan(const std::string& text) {
  try {
    return CheckJsonScan(text);
  } catch (const Finding& finding) {
    ADD_FAILURE() << finding.what() << "\ninput: " << ::testing::PrintToString(text);
    return false;
  }
}

TEST(JsonScan, EachCharacterAtEachPlaceOfAString) {
  for (const Piece& piece : kPieces) {
    SCOPED_TRACE(piece.why);
    for (size_t before = 0; before < kPlaces; ++before) {
      for (const size_t after : {0, 1, 7, 40}) {
        const std::string string =
            '"' + std::string(before, 'b') + piece.text + std::string(after, 'z') + '"';
        ASSERT_EQ(Scan("[" + string + "]"), piece.isRead) << before;
        ASSERT_EQ(Scan("{" + string + ":1," + string + ":2}"), piece.isRead) << before;
      }
    }
  }
}

TEST(JsonScan, ATextCutAtAnyPlaceIsNotRead) {
  std::string text =
      R"( [{"a" : "long \u00e9 text \" of two blocks, and more","b":[true,false,null]} ,)"
      " \r\n\t-0,1.5e3, 123456789012345678, {} , [ ] ] ";
  EXPECT_TRUE(Scan(text));
  while (text.pop_back(), text.back() == ' ') EXPECT_TRUE(Scan(text));
  for (; !text.empty(); text.pop_back())
    ASSERT_FALSE(Scan(text.substr(0, text.size() - 1))) << text;
}

TEST(JsonScan, NumbersAtTheirBorders) {
  const char* const kRead[] = {"0",
                               "-0",
                               "-0.0",
                               "0.5",
                               "1e5",
                               "1E+05",
                               "1e-99",
                               "-9223372036854775808",
                               "18446744073709551615",
                               "18446744073709551616",
                               "-9223372036854775809"};
  const char* const kLeft[] = {"-",     "+1", "00",       "-01", "1.",    ".5",
                               "1.e5",  "1e", "1e+",      "0x1", "1e400", "1e309",
                               "0e309", "1a", "Infinity", "NaN", "truE",  "nul"};
  for (const std::string number : kRead) EXPECT_TRUE(Scan("[" + number + "]")) << number;
  for (const std::string number : kLeft) {
    EXPECT_FALSE(Scan("[" + number + "]")) << number;
    EXPECT_FALSE(Scan("[1," + number + "]")) << number;
  }
  std::string digits;
  for (int i = 0; i < 30; ++i) {
    digits += static_cast<char>('1' + i % 9);
    EXPECT_TRUE(Scan("[" + digits + "," + digits + ".5,-" + digits + "]")) << digits;
  }
}

TEST(JsonScan, WhatIsNoDocumentIsLeft) {
  for (const char* text : {"",
                           " ",
                           "1",
                           "\"]",
                           "{]",
                           "[}",
                           "[[]",
                           "[[}]",
                           "[{]]",
                           "[[1}]",
                           "[{\"a\":1]]",
                           "[]]",
                           "[1 2]",
                           "[,]",
                           "[1,]",
                           "{,}",
                           "{1:2}",
                           "{\"a\"}",
                           "{\"a\":}",
                           "{\"a\" 1}",
                           "{\"a\":1,}",
                           "{\"a\":1 \"b\":2}",
                           "[] []",
                           "\xEF\xBB\xBF[]",
                           "[1]x",
                           "[]]"}) {
    EXPECT_FALSE(Scan(text)) << text;
  }
  EXPECT_FALSE(Scan(R"([{"a\"":1},{"a"":1},"enough text"])"));  // the name has this quote
  EXPECT_FALSE(Scan("[1\0]"s));
  EXPECT_FALSE(Scan("[1]\0]"s));
  EXPECT_TRUE(Scan(R"({"":1,"":{"":2,"a\"":3,"a":4,"a\"":5},"a":6})"));
}

}  // namespace
}  // namespace Kest::Fuzz
