#include <cmath>

#include "binding/json_adapter.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/log_capture.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;
using ::testing::ElementsAre;

BindingProperty Blob(std::string_view bytes) {
  return BindingProperty::FromBlob({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

TEST(WriteJson, EachValueHasItsForm) {
  const auto text = [](std::string_view value) { return BindingProperty::FromString(value); };
  const auto number = [](double value) { return BindingProperty::FromFloat(value); };
  const struct {
    BindingProperty value;
    std::string json;
  } cases[] = {
      {{}, "null"},
      {BindingProperty::FromBool(false), "false"},
      {BindingProperty::FromSigned(INT64_MIN), "-9223372036854775808"},
      {BindingProperty::FromUnsigned(UINT64_MAX), "18446744073709551615"},
      {number(1), "1.0"},
      {number(-0.0), "-0.0"},
      {number(0.1), "0.1"},
      {number(123456.75), "123456.75"},
      {number(1e5), "100000.0"},
      {number(123e18), "123000000000000000000.0"},
      {number(1e21), "1e21"},
      {number(1.5e22), "1.5e22"},
      {number(1e-6), "0.000001"},
      {number(-1.25e-7), "-1.25e-7"},
      {number(1e-7), "1e-7"},
      {number(5e-324), "5e-324"},
      {number(1.7976931348623157e308), "1.7976931348623157e308"},
      {BindingProperty::FromEnum(GradeRecord(), -4), "\"Fabled\""},
      {BindingProperty::FromEnum(GradeRecord(), 77), "77"},
      {Blob("caf\xc3\xa9"), "\"caf\xc3\xa9\""},
      {text("a\"b\\c/d\x7f"), "\"a\\\"b\\\\c/d\x7f\""},
      {text("\b\f\n\r\t\x01\x1f\0z"s), "\"\\b\\f\\n\\r\\t\\u0001\\u001F\\u0000z\""},
      {text("plain text, euro \xe2\x82\xac, end"), "\"plain text, euro \xe2\x82\xac, end\""},
      {BindingProperty::Collection(), "[]"},
      {BindingProperty::Structure(), "{}"},
      {Tree(R"([[],{},[[1],2],{"a":{"b":[]},"\n":null}])"),
       R"([[],{},[[1],2],{"a":{"b":[]},"\n":null}])"},
  };
  for (const auto& c : cases) EXPECT_EQ(Json(c.value), c.json);
}

TEST(WriteJson, WhatCannotBeWrittenLeavesNothingBehind) {
  const struct {
    const char* why;
    BindingProperty value;
    const char* failure;
  } cases[] = {
      {"not a number", BindingProperty::FromFloat(NAN),
       "A number that is not finite cannot be written as JSON."},
      {"infinite", BindingProperty::FromFloat(-INFINITY),
       "A number that is not finite cannot be written as JSON."},
      {"bytes", Blob("\xff\xfe"), "A blob that is not UTF-8 cannot be written as JSON."},
  };
  for (const auto& c : cases) {
    BindingProperty tree;
    for (int i = 0; i < 5000; ++i) tree.Append().SetString("more than one block of text");
    tree.Append() = c.value;
    ConversionContext context(Registry());
    std::string text = "kept";
    WriteJson(context, tree, &text);
    EXPECT_EQ(context.ErrorText(), c.failure) << c.why;
    EXPECT_EQ(text, "kept") << c.why;
    WriteJson(context, BindingProperty(), &text);
    EXPECT_EQ(text, "kept") << "a failed context writes nothing";
  }
  ConversionContext context(Registry());
  std::string text = "kept";
  WriteJsonValue(context, std::map<std::string, double>{{"a", 1}, {"b", NAN}}, &text);
  EXPECT_FALSE(context.Ok());
  EXPECT_EQ(text, "kept");
}

TEST(WriteJson, BadBytesBecomeReplacementsAndOneWarning) {
  LogCapture log;
  const std::pair<std::string, std::string> cases[] = {
      {"\xff\xfe", "\"\xef\xbf\xbd\xef\xbf\xbd\""},
      {"a\xc3(b", "\"a\xef\xbf\xbd(b\""},
      {"\xed\xa0\x80", "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\""},
      {"cut \xe2\x82", "\"cut \xef\xbf\xbd\xef\xbf\xbd\""},
  };
  for (const auto& [bytes, json] : cases) EXPECT_EQ(Json(BindingProperty::FromString(bytes)), json);
  EXPECT_EQ(log.Lines().size(), std::size(cases));
  EXPECT_EQ(log.Lines()[0], "  WARN|| JSON text: 2 bytes that are not UTF-8 were replaced");
}

// Every length around the words and blocks that texts are copied in, with a special character at
// each end.
TEST(WriteJson, TextsOfAnyLengthAreWholeAcrossBlocks) {
  for (size_t size = 0; size < 40; ++size) {
    for (size_t special = 0; special <= size; ++special) {
      std::string text(size, 'x');
      if (special < size) text[special] = '\n';
      const BindingProperty value = BindingProperty::FromString(text);
      ASSERT_TRUE(Tree(Json(value)) == value) << size << " " << special;
    }
  }
  BindingProperty list;
  for (size_t size = 4000; size < 17000; size += 61) {
    std::string text(size, 'y');
    text[size / 2] = '"';
    text += "\xe2\x82\xac";
    list.Append().SetString(text);
  }
  EXPECT_TRUE(Tree(Json(list)) == list);
}

TEST(WriteJson, AWarmTextIsNotMovedAgain) {
  std::vector<Part> parts(5000, Part{"some \"quoted\" name", 12345});
  std::string text;
  ConversionContext context(Registry());
  WriteJsonValue(context, parts, &text);
  const std::string first = text;
  const char* place = text.data();
  const size_t room = text.capacity();
  text.clear();
  WriteJsonValue(context, parts, &text);
  EXPECT_EQ(text, first);
  EXPECT_EQ(text.data(), place);
  EXPECT_EQ(text.capacity(), room);
}

TEST(ReadJsonValue, FailuresAreTheDecodersOrTheConvertersOwn) {
  int32_t value = 5;
  ConversionContext decoder(Registry());
  ReadJsonValue(decoder, "<value>", "[", &value);
  EXPECT_EQ(decoder.ErrorText(), "Invalid value.");
  ConversionContext converter(Registry());
  ReadJsonValue(converter, "<value>", "\"x\"", &value);
  EXPECT_EQ(converter.ErrorText(), "Value x for '<value>' of type int32 is in an incorrect format");
  EXPECT_EQ(value, 5);
}

}  // namespace
}  // namespace Kest
