#include <random>

#include "host/world/file/quantity_expression.h"
#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

TEST(WorldJson, NamesThePlaceOfWhatItRefuses) {
  const struct {
    const char* why;
    std::string text;
    std::string issue;  // behind "t:"
  } kCases[] = {
      {"trailing comma on the second line", "[1,\n ]", "2:2: Invalid value."},
      {"column counts characters", "[\"\xC3\xA4\xC3\xA4\", x]", "1:8: Invalid value."},
      {"a NUL does not hide the rest", std::string("{}\0{}", 5),
       "1:3: The document root must not be followed by other values."},
      {"blanks, a byte-order mark and lines count", "\xEF\xBB\xBF[1,\n {\"b\" : [\"\\uDC00\"]}]",
       "2:10: The surrogate pair in string is invalid."},
      {"half a byte-order mark", "\xEF\xBB{}", "1:1: Invalid value."},
      {"a byte that is no UTF-8", "[\"\xFF\"]", "1:3: Invalid encoding in string."},
      {"lone low surrogate", "[1, \"\\uDC00\"]", "1:5: The surrogate pair in string is invalid."},
      {"the same in a name", "{\"\\uDC00\": 1}", "1:2: The surrogate pair in string is invalid."},
      {"a name twice", "{\"a\": 1,\n \"b\": 2, \"a\": 3}",
       "2:10: member \"a\" stands here a second time"},
      {"a number whose exponent wraps an int", "[1e4294967297]",
       "1:2: Number too big to be stored in double."},
      {"a number just beyond", "[1.7976931348623159e308]", "1:2: Number out of range of a double."},
      {"a number too small", "[1, 1e-400]", "1:5: Number out of range of a double."},
      {"too many levels", std::string(1000000, '['), "1:65: Nesting is too deep."},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    const auto json = ReadJson(c.text);
    ASSERT_FALSE(json);
    EXPECT_EQ(DescribeIssue("t", json.GetFailure()), "t:" + c.issue);
  }
}

JsonValue RandomJson(std::mt19937_64& random, int depth) {
  const uint64_t kind = random() % (depth > 0 ? 8 : 6);
  if (kind == 0) return JsonValue();
  if (kind == 1) return random() % 2 == 0;
  if (kind == 2) return static_cast<int64_t>(random());
  if (kind == 3) return random() | 1ULL << 63;
  if (kind == 4) return static_cast<double>(random()) * 0x1.0p-70;
  if (kind == 5) return std::string("t\"\\\n\x01\0\xC3\xA4", random() % 9);
  JsonValue::Array list;
  JsonValue::Object object;
  for (uint64_t i = random() % 4; i > 0; --i) {
    list.push_back(RandomJson(random, depth - 1));
    object.push_back({std::string(i, '\t'), list.back()});
  }
  return kind == 6 ? JsonValue(list) : JsonValue(object);
}

TEST(WorldJson, ReadsBackWhatItWrote) {
  std::mt19937_64 random(301);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = WriteJson(RandomJson(random, 5));
    const auto json = ReadJson(text);
    // The one text that may be cut in the middle of a character is refused, not mended.
    if (!json) {
      ASSERT_EQ(json.GetFailure().text, "Invalid encoding in string.") << text;
      continue;
    }
    ASSERT_EQ(WriteJson(json.GetValue()), text) << "round " << round;
  }
  EXPECT_EQ(WriteJson(Parse("[18446744073709551615,-9223372036854775808,0.1]")),
            "[18446744073709551615,-9223372036854775808,0.1]");
}

TEST(QuantityExpression, CalculatesAsTheServiceWritesIt) {
  const std::pair<const char*, int64_t> kCases[] = {
      {" 2 + 3 * 4 ", 14}, {"(2+3)*4", 20}, {"20-5-3", 12}, {"24/4/2", 3},
      {"7/2", 3},          {"((8))", 8},    {"2-5", -3},    {"9223372036854775807", INT64_MAX}};
  for (const auto& [text, value] : kCases) EXPECT_EQ(EvaluateQuantity(text), value) << text;
  for (const char* text :
       {"", "2 3", "2+", "+2", "(2", "2)", "()", "2(3)", "1/0", "1.5", "9223372036854775808",
        "9223372036854775807+1", "4294967296*4294967296", "(0-9223372036854775807-1)/(0-1)"}) {
    EXPECT_EQ(EvaluateQuantity(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace Kest::Host
