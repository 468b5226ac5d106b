// One set of values in all formats: whatever a body is written in, handlers see the same.
#include <charconv>
#include <sstream>

#include "binding/msgpack_reader.h"
#include "binding/msgpack_writer.h"
#include "binding/yaml_adapter.h"
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
  return context.Ok() ? text : context.ErrorText();
}

using Texts = std::vector<std::string>;
using Parts = std::vector<Part>;
using PartMap = std::map<std::string, Part>;

TEST(Formats, OneValueReadsAlikeInEach) {
  const struct {
    const char *why, *json, *packed, *yaml, *tree;
    std::string (*convert)(const BindingProperty&);
    const char* outcome;
  } kCases[] = {
      {"null", "null", "c0", "~", "~", As<int32_t>, "A value for 'v' is required."},
      {"null as free form", "null", "c0", "", "~", As<BindingProperty>, "null"},
      {"bool", "true", "c3", "True", "true", As<bool>, "true"},
      {"bool for a number", "false", "c2", "false", "false", As<uint8_t>,
       "Couldn't assign value to 'v' of type uint8 because the input is of an invalid type bool."},
      {"largest that fits", "255", "cc ff", "255", "u255", As<uint8_t>, "255"},
      {"too large", "300", "cd 1 2c", "+300", "u300", As<uint8_t>,
       "Value 300 for 'v' of type uint8 is out of range"},
      {"negative", "-5", "fb", "-5", "s-5", As<double>, "-5.0"},
      {"no unsigned", "-1", "d0 ff", "-1", "s-1", As<uint64_t>,
       "Value -1 for 'v' of type uint64 is out of range"},
      {"no signed", "18446744073709551615", "cf ff ff ff ff ff ff ff ff", "18446744073709551615",
       "u18446744073709551615", As<int64_t>,
       "Value 18446744073709551615 for 'v' of type int64 is out of range"},
      {"smallest", "-9223372036854775808", "d3 80 0 0 0 0 0 0 0", "-9223372036854775808",
       "s-9223372036854775808", As<int64_t>, "-9223372036854775808"},
      {"cut toward zero", "-2.75", "ca c0 30 0 0", "-2.75", "f-2.75", As<int32_t>, "-2"},
      {"exact", "0.1", "cb 3f b9 99 99 99 99 99 9a", "0.1", "f0.1", As<double>, "0.1"},
      {"number as a bool", "1", "cc 1", "1", "u1", As<bool>,
       "Couldn't assign value to 'v' of type bool because the input is of an invalid type "
       "unsigned."},
      {"number as a text", "1", "cc 1", "1", "u1", As<std::string>,
       "Couldn't assign value to 'v' because the input is not a string."},
      {"text as a number", "\"0x1F\"", "a4 '0x1F'", "0x1F", "\"0x1F\"", As<int8_t>, "31"},
      {"no number", "\"1a\"", "d9 2 '1a'", "1a", "\"1a\"", As<float>,
       "Value 1a for 'v' of type float is in an incorrect format"},
      {"no bool", "\"yes\"", "a3 'yes'", "yes", "\"yes\"", As<bool>,
       "Value yes for 'v' of type bool is in an incorrect format. Options are \"true\", "
       "\"false\", \"1\", \"0\"."},
      {"empty text", "\"\"", "a0", "''", "\"\"", As<std::string>, "\"\""},
      {"characters", "\"\\u00e9\\n\\\"\"", "a4 c3 a9 a 22", "\"\\xe9\\n\\\"\"",
       "\"\xc3\xa9\\n\\\"\"", As<std::string>, "\"\xc3\xa9\\n\\\"\""},
      {"enumerator", "\"Fabled\"", "a6 'Fabled'", "Fabled", "\"Fabled\"", As<Grade>, "\"Fabled\""},
      {"its number", "-4", "fc", "-4", "s-4", As<Grade>, "\"Fabled\""},
      {"no enumerator", "9", "cc 9", "9", "u9", As<Grade>,
       "9 is not a valid Grade enumeration value for 'v'."},
      {"list", R"(["a",""])", "92 a1 'a' a0", "- a\n- ''", R"(["a",""])", As<Texts>, R"(["a",""])"},
      {"no list", "{}", "80", "{}", "{}", As<Texts>,
       "Couldn't assign value to 'v' of type vector because the input not a collection."},
      {"containers", R"([[],{},[{"a":[null]}]])", "93 90 de 0 0 dc 0 1 81 a1 'a' 91 c0",
       "- []\n- {}\n- - a:\n      -\n", "[[],{},[{a:[~]}]]", As<BindingProperty>,
       R"([[],{},[{"a":[null]}]])"},
      {"structure", R"({"name":"a","count":2,"x":[]})",
       "83 a4 'name' a1 'a' a5 'count' cc 2 a1 'x' 90", "name: a\ncount: 2\nx: []",
       R"({name:"a",count:u2,x:[]})", As<Part>, R"({"name":"a","count":2})"},
      {"without an optional member", R"({"count":null,"name":"a"})",
       "df 0 0 0 2 a5 'count' c0 a4 'name' a1 'a'", "{count: , name: a}", R"({count:~,name:"a"})",
       As<Part>, R"({"name":"a","count":7})"},
      {"without a required one", R"({"Name":"a"})", "81 a4 'Name' a1 'a'", "Name: a",
       R"({Name:"a"})", As<Part>,
       "Couldn't assign value to 'v' of type Part because the input structure doesn't have "
       "required field 'name'."},
      {"no structure", "[]", "90", "[]", "[]", As<Part>,
       "Couldn't assign value to 'v' of type Part because the input not a structure."},
      {"repeated member", R"({"a":{"x":1},"b":2,"a":{"y":3}})",
       "83 a1 'a' 81 a1 'x' cc 1 a1 'b' cc 2 a1 'a' 81 a1 'y' cc 3", "a: {x: 1}\nb: 2\na: {y: 3}",
       "{a:{y:u3},b:u2}", As<BindingProperty>, R"({"a":{"y":3},"b":2})"},
      {"map", R"({"k":{"name":"a"},"1":{"name":"b"}})",
       "82 a1 'k' 81 a4 'name' a1 'a' a1 '1' 81 a4 'name' a1 'b'", "k: &x {name: a}\n1: {name: b}",
       R"({k:{name:"a"},1:{name:"b"}})", As<PartMap>,
       R"({"1":{"name":"b","count":7},"k":{"name":"a","count":7}})"},
      {"failure deep inside", R"([{"name":"a"},{"name":"b","count":"x"}])",
       "92 81 a4 'name' a1 'a' 82 a4 'name' a1 'b' a5 'count' a1 'x'",
       "- name: a\n- name: b\n  count: x\n", R"([{name:"a"},{name:"b",count:"x"}])", As<Parts>,
       "Value x for 'count' of type int32 is in an incorrect format"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    ConversionContext context(Registry());
    const BindingProperty trees[] = {
        ReadJson(context, c.json), ReadPacked(context, Bytes(c.packed)), ReadYaml(context, c.yaml)};
    ASSERT_EQ(context.ErrorText(), "");
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

// JSON is YAML but for pairs of escapes: what we write can be read as either.
TEST(Formats, WrittenTreesReadBackInEach) {
  const BindingProperty tree = Tree(
      R"({"a":[1,-2,0.5,1e300,true,null,"","null","\u00e9\u20ac\ud83d\ude00","x: y # z"],"b":{"":{}}})");
  ConversionContext context(Registry());
  std::string packed;
  MessagePackWriter writer(&packed);
  EXPECT_TRUE(WriteTree(tree, writer));
  writer.Finish(context);
  EXPECT_EQ(Json(ReadPacked(context, packed)), Json(tree));
  EXPECT_TRUE(ReadYaml(context, Json(tree)) == tree);
  EXPECT_EQ(context.ErrorText(), "");
}

}  // namespace
}  // namespace Kest
