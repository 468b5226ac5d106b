// One set of values in all formats: in any format of a body, handlers see the same.
#include <charconv>
#include <sstream>

#include "binding/msgpack/msgpack_reader.h"
#include "binding/yaml/yaml_adapter.h"
#include "tests/binding/tree_text.h"

namespace Kest {
namespace {

using namespace Samples;

// "a1 'text' ff": bytes in hexadecimal, and texts.
std::string Bytes(const std::string& notation) {
  std::string bytes;
  std::istringstream words(notation);
  for (std::string word; words >> word;) {
    if (word.front() == '\'') {
      bytes += word.substr(1, word.size() - 2);
    } else {
      uint8_t byte = 0;
      std::from_chars(word.data(), word.data() + word.size(), byte, 16);
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

BindingProperty ReadPacked(ConversionContext& context, const std::string& bytes) {
  size_t consumed = 0;
  BindingProperty tree = ReadMessagePack(
      context, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, &consumed);
  EXPECT_EQ(consumed, bytes.size());
  return tree;
}

// The tree as a native value, in JSON, or why it is none.
template <typename T>
std::string As(const BindingProperty& tree) {
  ConversionContext context(Registry());
  T value{};
  Assign(context, "v", tree, &value);
  std::string text;
  if (context.Ok()) WriteJsonValue(context, value, &text);
  return context.Ok() ? text : context.ErrorMessage();
}

TEST(Formats, OneValueReadsAlikeInEach) {
  const struct {
    const char *why, *json, *packed, *yaml, *tree;
    std::string (*convert)(const BindingProperty&);
    const char* outcome;
  } kCases[] = {
      {"null", "null", "c0", "~", "~", As<int32_t>, "A value for 'v' is required."},
      {"bool", "true", "c3", "True", "true", As<bool>, "true"},
      {"bool for a number", "false", "c2", "FALSE", "false", As<int8_t>,
       "Couldn't assign value to 'v' of type int8 because the input is of an invalid type bool."},
      {"largest that fits", "255", "cc ff", "255", "u255", As<uint8_t>, "255"},
      {"too large", "300", "cd 1 2c", "+300", "u300", As<uint8_t>,
       "Value 300 for 'v' of type uint8 is out of range"},
      {"negative", "-1", "d0 ff", "-1", "s-1", As<uint64_t>,
       "Value -1 for 'v' of type uint64 is out of range"},
      {"largest", "18446744073709551615", "cf ff ff ff ff ff ff ff ff", "18446744073709551615",
       "u18446744073709551615", As<uint64_t>, "18446744073709551615"},
      {"smallest", "-9223372036854775808", "d3 80 0 0 0 0 0 0 0", "-9223372036854775808",
       "s-9223372036854775808", As<int64_t>, "-9223372036854775808"},
      {"beyond 64 bits", "18446744073709551616", "cb 43 f0 0 0 0 0 0 0", "18446744073709551616",
       "f18446744073709552000.0", As<uint64_t>,
       "Value 1.8446744073709552e+19 for 'v' of type uint64 is out of range"},
      {"minus zero", "-0", "d0 0", "-0", "s0", As<double>, "0.0"},
      {"its sign", "-0.0", "ca 80 0 0 0", "-0e0", "f-0.0", As<double>, "-0.0"},
      {"truncated toward zero", "-2.75", "ca c0 30 0 0", "-2.75", "f-2.75", As<int32_t>, "-2"},
      {"exact", "0.1", "cb 3f b9 99 99 99 99 99 9a", "0.1", "f0.1", As<double>, "0.1"},
      {"number as a text", "1", "cc 1", "1", "u1", As<std::string>,
       "Couldn't assign value to 'v' because the input is not a string."},
      {"text as a number", "\"0x1F\"", "a4 '0x1F'", "0x1F", "\"0x1F\"", As<int8_t>, "31"},
      {"no number", "\"1a\"", "d9 2 '1a'", "1a", "\"1a\"", As<float>,
       "Value 1a for 'v' of type float is in an incorrect format"},
      {"empty text", "\"\"", "a0", "''", "\"\"", As<std::string>, "\"\""},
      {"characters", "\"\\u00e9\\n\\\"\"", "a4 c3 a9 a 22", "\"\\xe9\\n\\\"\"",
       "\"\xc3\xa9\\n\\\"\"", As<std::string>, "\"\xc3\xa9\\n\\\"\""},
      {"enumerator", "\"Fabled\"", "a6 'Fabled'", "Fabled", "\"Fabled\"", As<Grade>, "\"Fabled\""},
      {"its number", "-4", "fc", "-4", "s-4", As<Grade>, "\"Fabled\""},
      {"no enumerator", "9", "cc 9", "9", "u9", As<Grade>,
       "9 is not a valid Grade enumeration value for 'v'."},
      {"containers", R"([[],{},[{"a":[null]}]])", "93 90 de 0 0 dc 0 1 81 a1 'a' 91 c0",
       "- []\n- {}\n- - a:\n      -\n", "[[],{},[{a:[~]}]]", As<BindingProperty>,
       R"([[],{},[{"a":[null]}]])"},
      {"null is as absent", R"({"count":null,"name":"a","x":[]})",
       "df 0 0 0 3 a5 'count' c0 a4 'name' a1 'a' a1 'x' 90", "{count: , name: a, x: []}",
       R"({count:~,name:"a",x:[]})", As<Part>, R"({"name":"a","count":7})"},
      {"no structure", "[]", "90", "[]", "[]", As<Part>,
       "Couldn't assign value to 'v' of type Part because the input not a structure."},
      {"repeated member", R"({"a":{"x":1},"b":2,"a":{"y":3}})",
       "83 a1 'a' 81 a1 'x' cc 1 a1 'b' cc 2 a1 'a' 81 a1 'y' cc 3", "a: {x: 1}\nb: 2\na: {y: 3}",
       "{a:{y:u3},b:u2}", As<BindingProperty>, R"({"a":{"y":3},"b":2})"},
      {"failure deep inside", R"({"k":{"name":"a"},"1":{"count":2}})",
       "82 a1 'k' 81 a4 'name' a1 'a' a1 '1' 81 a5 'count' cc 2", "k: {name: a}\n1: {count: 2}",
       R"({k:{name:"a"},1:{count:u2}})", As<std::map<std::string, Part>>,
       "Couldn't assign value to 'v' of type Part because the input structure doesn't have "
       "required field 'name'."},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    const BindingProperty trees[] = {
        ReadJson(context, c.json), ReadPacked(context, Bytes(c.packed)), ReadYaml(context, c.yaml)};
    ASSERT_EQ(context.ErrorMessage(), "");
    for (const BindingProperty& tree : trees) {
      EXPECT_EQ(Shown(tree), c.tree);
      EXPECT_TRUE(tree == trees[0]);
      EXPECT_EQ(c.convert(tree), c.outcome);
    }
  }
}

// MessagePack calls small numbers signed, the texts unsigned: no target sees the difference.
TEST(Formats, SmallNumbersConvertAlike) {
  std::string (*const kTargets[])(const BindingProperty&) = {
      As<int8_t>, As<uint8_t>, As<int64_t>,        As<uint64_t>,
      As<float>,  As<Grade>,   As<BindingProperty>};
  for (int number = 0; number < 128; ++number) {
    const std::string text = std::to_string(number);
    ConversionContext context(Registry());
    const BindingProperty packed = ReadPacked(context, std::string(1, static_cast<char>(number)));
    for (const auto convert : kTargets) {
      EXPECT_EQ(convert(packed), convert(Tree(text)));
      EXPECT_EQ(convert(packed), convert(ReadYaml(context, text)));
    }
  }
}

// JSON is YAML but for pairs of escapes, which we do not write.
TEST(Formats, WrittenJsonReadsBackAsYaml) {
  const BindingProperty tree = Tree(
      R"({"a":[1,-2,0.5,1e300,true,null,"","null","\u00e9\ud83d\ude00","x: y # z"],"b":{"":{}}})");
  ConversionContext context(Registry());
  EXPECT_TRUE(ReadYaml(context, Json(tree)) == tree) << context.ErrorMessage();
}

}  // namespace
}  // namespace Kest
