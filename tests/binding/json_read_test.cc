#include <cmath>
#include <random>

#include "binding/json_adapter.h"
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
      {" true\n", BindingProperty::FromBool(true)},
      {"0", BindingProperty::FromUnsigned(0)},
      {"-0", BindingProperty::FromSigned(0)},
      {"18446744073709551615", BindingProperty::FromUnsigned(UINT64_MAX)},
      {"18446744073709551616", BindingProperty::FromFloat(0x1p64)},
      {"10000000000000000000", BindingProperty::FromUnsigned(10000000000000000000u)},
      {"-9223372036854775808", BindingProperty::FromSigned(INT64_MIN)},
      {"-9223372036854775809", BindingProperty::FromFloat(-0x1p63)},
      {"1.0", BindingProperty::FromFloat(1)},
      {"1e2", BindingProperty::FromFloat(100)},
      {"-1E-2", BindingProperty::FromFloat(-0.01)},
      {"5e-324", BindingProperty::FromFloat(5e-324)},
      {"1e-400", BindingProperty::FromFloat(0)},
      {"1.7976931348623157e308", BindingProperty::FromFloat(1.7976931348623157e308)},
      // Twenty-four characters whose exponents overflow an int when summed carelessly.
      {"0.1111111111e-2147483639", BindingProperty::FromFloat(0)},
      {"0.00000000000000000000000000000000000000000001e-9", BindingProperty::FromFloat(1e-53)},
      {"\"a\\u00e9\\n\\ud83d\\ude00\"", BindingProperty::FromString("a\xc3\xa9\n\xf0\x9f\x98\x80")},
  };
  for (const auto& c : cases) {
    const BindingProperty read = Tree(c.json);
    EXPECT_EQ(read.kind(), c.value.kind()) << c.json;
    EXPECT_TRUE(read == c.value) << c.json;
  }
}

TEST(ReadJson, FailuresCarryTheDecodersWordsAndTheirPlace) {
  const struct {
    const char* why;
    std::string json;
    const char* failure;
    size_t offset;
  } cases[] = {
      {"nothing", "", "The document is empty.", 0},
      {"blanks", " \n", "The document is empty.", 2},
      {"two roots", "1 2", "The document root must not be followed by other values.", 2},
      {"value behind a NUL", "{\"a\":1}\0{\"b\":2}"s,
       "The document root must not be followed by other values.", 7},
      {"leading zero", "01", "The document root must not be followed by other values.", 1},
      {"no value", "[1,]", "Invalid value.", 3},
      {"comment", "/**/1", "Invalid value.", 0},
      {"NaN", "NaN", "Invalid value.", 0},
      {"torn byte-order mark", "\xef\xbb{}", "Invalid value.", 0},
      {"two byte-order marks", "\xef\xbb\xbf\xef\xbb\xbf{}", "Invalid value.", 3},
      {"single quotes", "['a']", "Invalid value.", 1},
      {"name", "{1:2}", "Missing a name for object member.", 1},
      {"colon", "{\"a\" 1}", "Missing a colon after a name of object member.", 5},
      {"comma in a structure", "{\"a\":1 \"b\"}", "Missing a comma or '}' after an object member.",
       7},
      {"comma in a collection", "[1 2]", "Missing a comma or ']' after an array element.", 3},
      {"hex digit", "[\"\\u00g0\"]", "Incorrect hex digit after \\u escape in string.", 2},
      {"high surrogate alone", "[\"\\ud800x\"]", "The surrogate pair in string is invalid.", 2},
      {"low surrogate alone", "[1,\"a\\uDC00\"]", "The surrogate pair in string is invalid.", 12},
      {"low surrogate in a name", "{\"\\uDFFF\":1}", "The surrogate pair in string is invalid.", 9},
      {"unknown escape", "\"\\q\"", "Invalid escape character in string.", 1},
      {"no closing quote", "[\"abcdefghijklm", "Missing a closing quotation mark in string.", 15},
      {"NUL in a string", "\"a\0b\""s, "Missing a closing quotation mark in string.", 2},
      {"stray byte", "[\"abc\xff\"]", "Invalid encoding in string.", 5},
      {"overlong form", "\"\xc0\x80\"", "Invalid encoding in string.", 1},
      {"encoded surrogate", "\"\xed\xa0\x80\"", "Invalid encoding in string.", 1},
      {"cut character", "\"\xe2\x82\"", "Invalid encoding in string.", 1},
      {"bad byte in a name", "{\"\x80\":1}", "Invalid encoding in string.", 2},
      {"grammar before encoding", "[1 \"\xff\"]", "Missing a comma or ']' after an array element.",
       3},
      {"encoding before grammar", "[\"\xff\" 1]", "Invalid encoding in string.", 2},
      {"surrogate before grammar", "[\"\\udc00\" 1]", "The surrogate pair in string is invalid.",
       9},
      {"too large", "[1e400]", "Number too big to be stored in double.", 1},
      {"just too large", "[0,1.7976931348623159e308]", "Number too big to be stored in double.", 3},
      {"too large in digits", "-" + std::string(400, '9'), "Number too big to be stored in double.",
       0},
      {"no fraction", "1.", "Miss fraction part in number.", 2},
      {"no exponent", "1e+", "Miss exponent in number.", 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    size_t offset = SIZE_MAX;
    EXPECT_TRUE(ReadJson(context, c.json, &offset).IsEmpty());
    EXPECT_EQ(context.ErrorText(), c.failure);
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
  const std::pair<std::string, std::string> parts[] = {{"abcdefgh", "abcdefgh"},
                                                       {"x", "x"},
                                                       {"\\\"", "\""},
                                                       {"\\u0041", "A"},
                                                       {"\xc3\xa9", "\xc3\xa9"},
                                                       {"\\u20ac", "\xe2\x82\xac"},
                                                       {"\xed\x9f\xbf", "\xed\x9f\xbf"},
                                                       {"\\u0000", "\0"s},
                                                       {"\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80"},
                                                       {"\\/", "/"},
                                                       {"\\ud7ff", "\xed\x9f\xbf"},
                                                       {"klm", "klm"},
                                                       {"\x7f", "\x7f"}};
  std::mt19937 draw(301);
  for (int round = 0; round < 3000; ++round) {
    std::string json = "{\"";
    std::string decoded;
    for (size_t i = draw() % 9; i > 0; --i) {
      const auto& [encoded, plain] = parts[draw() % std::size(parts)];
      json += encoded;
      decoded += plain;
    }
    const std::string name = json.substr(2);
    json += "\":[-17,\"" + name + "\"]}";
    const BindingProperty tree = Tree(json);
    ASSERT_EQ(tree.MemberName(0), decoded) << json;
    ASSERT_EQ(tree.MemberValue(0).Element(1).AsString(), decoded) << json;
    ASSERT_EQ(tree.MemberValue(0).Element(0).AsSigned(), -17) << json;
    ASSERT_TRUE(Tree(Json(tree)) == tree) << json;
  }
}

TEST(ReadJson, OneByteOrderMarkIsSkipped) {
  EXPECT_EQ(Json(Tree("\xef\xbb\xbf[1]")), "[1]");
  EXPECT_EQ(Json(Tree("\"\xef\xbb\xbf\"")), "\"\xef\xbb\xbf\"");
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
  EXPECT_EQ(large.ErrorText(), "Body is too large");

  std::string text = "[";
  for (size_t i = 1; i < kMaxTreeValues; ++i) text += "1,";
  ConversionContext most(Registry());
  ReadJson(most, text.substr(0, text.size() - 1) + "]");
  EXPECT_EQ(most.ErrorText(), "");
  ConversionContext tooMany(Registry());
  ReadJson(tooMany, text + "1]");
  EXPECT_EQ(tooMany.ErrorText(), "Too many values.");
}

TEST(ReadJson, EveryDoubleSurvivesWritingAndReading) {
  std::mt19937_64 draw(301);
  std::string text;
  for (int round = 0; round < 200000; ++round) {
    double value = std::bit_cast<double>(draw());
    if (round % 3 == 0) value = static_cast<double>(draw() % 100000000) / 1e4;
    if (!std::isfinite(value)) continue;
    text.clear();
    ConversionContext context(Registry());
    WriteJsonValue(context, value, &text);
    const BindingProperty read = ReadJson(context, text);
    ASSERT_EQ(read.kind(), BindingKind::kFloat) << text;
    ASSERT_EQ(std::bit_cast<uint64_t>(read.AsFloat()), std::bit_cast<uint64_t>(value)) << text;
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
  }
}

TEST(ReadJson, DecimalTextsGiveTheNearestDouble) {
  std::mt19937_64 draw(302);
  for (int round = 0; round < 100000; ++round) {
    std::string text = std::to_string(draw() >> (draw() % 64));
    if (draw() % 2 == 0) text.insert(1, ".0");
    text += "e" + std::to_string(static_cast<int>(draw() % 660) - 350);
    const double expected = std::strtod(text.c_str(), nullptr);
    ConversionContext context(Registry());
    const BindingProperty read = ReadJson(context, text);
    if (std::isinf(expected)) {
      ASSERT_EQ(context.ErrorText(), "Number too big to be stored in double.") << text;
    } else {
      ASSERT_EQ(read.AsFloat(), expected) << text;
    }
  }
}

}  // namespace
}  // namespace Kest
