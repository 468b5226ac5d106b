#include <gtest/gtest.h>

#include "host/world/file/quantity_expression.h"
#include "host/world/input/document.h"

namespace Kest::Host {
namespace {

// The value as JSON text, or the failure's message.
std::string Read(const Maybe<Document>& document) {
  return document ? WriteJson(document.GetValue().root()) : document.GetFailure().text;
}

TEST(WorldInput, YamlIsReadByTheCoreSchemaAndJsonByItsOwnRules) {
  const std::pair<std::string, std::string> kCases[] = {
      {"[yes, no, on, 1_0, 0b1, 1e, -, +, 1.2.3, 08x, 'true', \"1\", .]",
       R"(["yes","no","on","1_0","0b1","1e","-","+","1.2.3","08x","true","1","."])"},
      {"[true, FALSE, ~, Null, 010, +7, -0x1, 0x1F, 0o17, 1., .5, -1.5e+2]",
       R"([true,false,null,null,10,7,"-0x1",31,15,1.0,0.5,-150.0])"},
      {"[18446744073709551615, -9223372036854775808, 18446744073709551616]",
       "[18446744073709551615,-9223372036854775808,1.8446744073709552e+19]"},
      {"1: a\n? b\n: [c]\nd:\n", R"({"1":"a","b":["c"],"d":null})"},
      // What libyaml itself would refuse, or read otherwise.
      {"\t{\"a\"\n:\"\\uD83D\\uDE00\x7F\xC2\x85 \"}", "{\"a\":\"\xF0\x9F\x98\x80\x7F\xC2\x85 \"}"},
      {"\xEF\xBB\xBF[1e400]", "t:1:2: number out of range"},
      {"[1, -.inf]", "t:1:5: number out of range"},
      {"\xEF\xBB\xBF{\"\xC3\xA4\": [1,\n &x 2, *x]}", "t:2:8: aliases are not supported"},
      {"[!!str 1]", "t:1:2: tags are not supported"},
      {"[{a: 1}]: 2", "t:1:1: a member's name must be a scalar"},
      {"{a: 1}\n---\n{}", "t:2:1: a second document begins here"},
      {"{\"a\": 1,\n \"b\": 2, \"a\": 3}", "t:2:10: duplicate member \"a\""},
      {"{\"\xC3\xA4\": \"\xFF\"}", "t:1:8: invalid leading UTF-8 octet"},
      {std::string(1000000, '['), "t:1:65: nesting is deeper than 64"},
      {std::string(64, '[') + std::string(64, ']'), std::string(64, '[') + std::string(64, ']')},
      {"", "null"},
  };
  for (const auto& [text, expected] : kCases) {
    EXPECT_EQ(Read(Document::FromYaml("t", text)), expected) << text.substr(0, 100);
  }
}

TEST(WorldInput, ARequestIsStrictJson) {
  const std::pair<std::string, std::string> kCases[] = {
      {"[1,\n ]",
       "t: parse error at line 2, column 2: syntax error while parsing value - unexpected ']'; "
       "expected '[', '{', or a literal"},
      {std::string("{}\0{}", 5), "t: a NUL is in the text"},
      {"{\"a\": {\"a\": 1, \"a\": 2}}", "t: duplicate member \"a\""},
      {std::string(1000000, '['), "t: nesting is deeper than 64"}};
  for (const auto& [text, expected] : kCases) {
    EXPECT_EQ(Read(Document::FromJson("t", text)), expected) << text.substr(0, 100);
  }
  for (const char* text : {"", "a: 1", "[1] 2", "[\"\xFF\"]", "[\"\\uDC00\"]", "[01]", "[1e400]"}) {
    EXPECT_FALSE(Document::FromJson("t", text)) << text;
  }
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
