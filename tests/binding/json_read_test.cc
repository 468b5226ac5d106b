#include <cmath>
#include <random>

#include "binding/json/json_adapter.h"
#include "tests/binding/binding_samples.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

TEST(ReadJson, EachTokenHasItsKind) {
  const struct {
    const char* json;
    BindingProperty value;
  } cases[] = {
      {"null", {}},
      {" true\n", Bool(true)},
      {"\xef\xbb\xbf\"\xef\xbb\xbf\"", Text("\xef\xbb\xbf")},  // one mark is skipped
      {"0", Unsigned(0)},
      {"-0", Signed(0)},
      {"18446744073709551615", Unsigned(UINT64_MAX)},
      {"18446744073709551616", Float(0x1p64)},
      {"-9223372036854775808", Signed(INT64_MIN)},
      {"-9223372036854775809", Float(-0x1p63)},
      {"1.0", Float(1)},
      {"-1E-2", Float(-0.01)},
      {"5e-324", Float(5e-324)},
      {"1e-400", Float(0)},
      {"1.7976931348623157e308", Float(1.7976931348623157e308)},
      // Twenty-four characters whose exponents overflow an int when summed carelessly.
      {"0.1111111111e-2147483639", Float(0)},
      {"0.00000000000000000000000000000000000000000001e-9", Float(1e-53)},
      {"\"a\\u00e9\\n\\ud83d\\ude00\"", Text("a\xc3\xa9\n\xf0\x9f\x98\x80")},
  };
  for (const auto& c : cases) {
    const BindingProperty read = Tree(c.json);
    EXPECT_EQ(read.kind(), c.value.kind()) << c.json;
    EXPECT_TRUE(read == c.value) << c.json;
  }
}

TEST(ReadJson, FailuresCarryTheDecodersWordsAndTheirPlace) {
  const char* const tooBig = "Number too big to be stored in double.";
  const char* const surrogate = "The surrogate pair in string is invalid.";
  const char* const encoding = "Invalid encoding in string.";
  const char* const twoRoots = "The document root must not be followed by other values.";
  const char* const comma = "Missing a comma or ']' after an array element.";
  const struct {
    const char* why;
    std::string json;
    const char* failure;
    size_t offset;
  } cases[] = {
      {"nothing", "", "The document is empty.", 0},
      {"two roots", "1 2", twoRoots, 2},
      {"value behind a NUL", "{\"a\":1}\0{\"b\":2}"s, twoRoots, 7},
      {"comment", "/**/1", "Invalid value.", 0},
      {"NaN", "NaN", "Invalid value.", 0},
      {"torn byte-order mark", "\xef\xbb{}", "Invalid value.", 0},
      {"two byte-order marks", "\xef\xbb\xbf\xef\xbb\xbf{}", "Invalid value.", 3},
      {"name", "{1:2}", "Missing a name for object member.", 1},
      {"colon", "{\"a\" 1}", "Missing a colon after a name of object member.", 5},
      {"comma in a structure", "{\"a\":1 \"b\"}", "Missing a comma or '}' after an object member.",
       7},
      {"comma in a collection", "[1 2]", comma, 3},
      {"hex digit", "[\"\\u00g0\"]", "Incorrect hex digit after \\u escape in string.", 2},
      {"high surrogate alone", "[\"\\ud800x\"]", surrogate, 2},
      {"low surrogate alone", "[1,\"a\\uDC00\"]", surrogate, 12},
      {"low surrogate in a name", "{\"\\uDFFF\":1}", surrogate, 9},
      {"unknown escape", "\"\\q\"", "Invalid escape character in string.", 1},
      {"no closing quote", "[\"abcdefghijklm", "Missing a closing quotation mark in string.", 15},
      {"NUL in a string", "\"a\0b\""s, "Missing a closing quotation mark in string.", 2},
      {"stray byte", "[\"abc\xff\"]", encoding, 5},
      {"encoded surrogate", "\"\xed\xa0\x80\"", encoding, 1},
      {"grammar before encoding", "[1 \"\xff\"]", comma, 3},
      {"encoding before grammar", "[\"\xff\" 1]", encoding, 2},
      {"just too large", "[0,1.7976931348623159e308]", tooBig, 3},
      {"too large by its exponent alone", "0e309", tooBig, 0},
      {"too large in digits", "-" + std::string(400, '9'), tooBig, 0},
      {"no fraction", "1.", "Miss fraction part in number.", 2},
      {"no exponent", "1e+", "Miss exponent in number.", 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    size_t offset = SIZE_MAX;
    EXPECT_TRUE(ReadJson(context, c.json, &offset).IsEmpty());
    EXPECT_EQ(context.ErrorMessage(), c.failure);
    EXPECT_EQ(offset, c.offset);
  }
}

TEST(ReadJson, EveryTornTextIsRefused) {
  const std::string text = R"({"a":[1.5e3,true,"\u00e9 plain text and more"],"b":{"c":null}})";
  for (size_t size = 0; size < text.size(); ++size) {
    ConversionContext context(Registry());
    ReadJson(context, std::string_view(text).substr(0, size));
    EXPECT_FALSE(context.Ok()) << size;
  }
}

// Strings whose plain runs, escapes and wide characters start and end at every place of a word.
TEST(ReadJson, StringsAreDecodedWhateverTheirParts) {
  const std::string encoded[] = {
      "abcdefgh", "x",       "\\\"",        "\\u0041", "\xc3\xa9",
      "\\u20ac",  "klm",     "\x7f",        "\\u0000", "\xf0\x9f\x98\x80",
      "\\/",      "\\ud7ff", "\xed\x9f\xbf"};
  const std::string decoded[] = {"abcdefgh",    "x",
                                 "\"",          "A",
                                 "\xc3\xa9",    "\xe2\x82\xac",
                                 "klm",         "\x7f",
                                 "\0"s,         "\xf0\x9f\x98\x80",
                                 "/",           "\xed\x9f\xbf",
                                 "\xed\x9f\xbf"};
  std::mt19937 draw(301);
  for (int round = 0; round < 3000; ++round) {
    std::string json;
    std::string text;
    for (size_t i = draw() % 9; i > 0; --i) {
      const size_t part = draw() % std::size(encoded);
      json += encoded[part];
      text += decoded[part];
    }
    const BindingProperty tree = Tree("{\"" + json + "\":[-17,\"" + json + "\"]}");
    ASSERT_EQ(tree.MemberName(0), text) << json;
    ASSERT_TRUE(tree.MemberValue(0).Element(0) == Signed(-17)) << json;
    ASSERT_TRUE(tree.MemberValue(0).Element(1) == Text(text)) << json;
    ASSERT_TRUE(Tree(Json(tree)) == tree) << json;
  }
}

TEST(ReadJson, StructuresOfManyMembersKeepOrderAndFindEachName) {
  std::string json = "{";
  for (int i = 0; i < 1000; ++i) json += "\"key" + std::to_string(i * 7 % 1000) + "\":0,";
  for (int i = 0; i < 1000; ++i)
    json += "\"key" + std::to_string(i) + "\":" + std::to_string(i) + ",";
  json.back() = '}';
  const BindingProperty tree = Tree(json);
  ASSERT_EQ(tree.Size(), 1000u);
  for (size_t i = 0; i < 1000; ++i) {
    const std::string name = "key" + std::to_string(i * 7 % 1000);
    ASSERT_EQ(tree.MemberName(i), name);
    ASSERT_EQ(tree.FindMember(name), &tree.MemberValue(i));
    ASSERT_EQ(tree.MemberValue(i).AsUnsigned(), i * 7 % 1000);
  }
  EXPECT_EQ(tree.FindMember("key1000"), nullptr);
}

TEST(ReadJson, BoundsAreKept) {
  ConversionContext large(Registry());
  ReadJson(large, std::string(kMaxJsonBytes + 1, ' '));
  EXPECT_EQ(large.ErrorMessage(), "Body is too large");

  // Where addresses have 32 bits, the bytes of a tree come to their bound first.
  constexpr size_t kFitting = sizeof(void*) == 8 ? kMaxTreeValues - 1 : kMaxTreeValues / 4 * 3;
  std::string text = "[";
  for (size_t i = 1; i < kMaxTreeValues; ++i) text += "1,";
  EXPECT_EQ(Tree(text.substr(0, 2 * kFitting) + "]").Size(), kFitting);
  ConversionContext tooMany(Registry());
  ReadJson(tooMany, text + "1]");
  EXPECT_EQ(tooMany.ErrorMessage(), "Too many values.");
}

TEST(ReadJson, EveryDoubleSurvivesWritingAndReading) {
  std::mt19937_64 draw(301);
  for (int round = 0; round < 200000; ++round) {
    double value = std::bit_cast<double>(draw());
    if (round % 3 == 0) value = static_cast<double>(draw() % 100000000) / 1e4;
    if (!std::isfinite(value)) continue;
    const std::string text = Json(Float(value));
    const BindingProperty read = Tree(text);
    ASSERT_EQ(read.kind(), BindingKind::kFloat) << text;
    ASSERT_EQ(std::bit_cast<uint64_t>(read.AsFloat()), std::bit_cast<uint64_t>(value)) << text;
  }
}

TEST(ReadJson, DecimalTextsGiveTheNearestDouble) {
  std::mt19937_64 draw(302);
  for (int round = 0; round < 100000; ++round) {
    std::string text = std::to_string(1 + (draw() >> (draw() % 64)));
    if (draw() % 2 == 0) text.insert(1, ".0");
    text += "e" + std::to_string(static_cast<int>(draw() % 660) - 350);
    const double expected = std::strtod(text.c_str(), nullptr);
    ConversionContext context(Registry());
    const BindingProperty read = ReadJson(context, text);
    ASSERT_EQ(context.Ok(), std::isfinite(expected)) << text;
    ASSERT_EQ(context.Ok() ? read.AsFloat() : expected, expected) << text;
  }
}

}  // namespace
}  // namespace Kest
