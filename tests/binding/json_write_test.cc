#include <cmath>

#include "binding/json/json_adapter.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/log_capture.h"

namespace Kest {
namespace {

using namespace Samples;
using namespace std::string_literals;

TEST(WriteJson, WhatCannotBeWrittenLeavesNothing) {
  for (const BindingProperty& value : {Float(NAN), Blob("\xff\xfe")}) {
    std::map<std::string, BindingProperty> items = {{"last", value}};
    for (int i = 0; i < 5000; ++i) items["a" + std::to_string(i)] = Text("more than one block");
    ConversionContext context(Registry());
    std::string text = "kept";
    WriteJsonValue(context, items, &text);
    EXPECT_FALSE(context.Ok());
    EXPECT_EQ(text, "kept") << context.ErrorMessage();
    WriteJson(context, BindingProperty(), &text);
    EXPECT_EQ(text, "kept") << "a failed context writes nothing";
  }
}

TEST(WriteJson, BadBytesBecomeReplacementsAndOneWarning) {
  LogCapture log;
  const std::pair<std::string, std::string> cases[] = {
      {"\xff\xfe", "\"\xef\xbf\xbd\xef\xbf\xbd\""},
      {"a\xc3(b", "\"a\xef\xbf\xbd(b\""},
      {"\xed\xa0\x80", "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\""},
      {"cut \xe2\x82", "\"cut \xef\xbf\xbd\xef\xbf\xbd\""},
  };
  for (const auto& [bytes, json] : cases) EXPECT_EQ(Json(Text(bytes)), json);
  EXPECT_EQ(log.Lines().size(), std::size(cases));
  EXPECT_EQ(log.Lines()[0], "  WARN|| JSON text: 2 bytes that are not UTF-8 were replaced");
}

TEST(WriteJson, LongTextsCrossBlocks) {
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
  const std::vector<Part> parts(5000, Part{"some \"quoted\" name", 12345});
  std::string text;
  ConversionContext context(Registry());
  WriteJsonValue(context, parts, &text);
  const auto place = [&text] { return reinterpret_cast<uintptr_t>(text.data()); };
  const uintptr_t before = place();
  const std::string first = text;
  text.clear();
  WriteJsonValue(context, parts, &text);
  EXPECT_EQ(text, first);
  EXPECT_EQ(place(), before);
}

TEST(ReadJsonValue, FailuresAreTheDecodersOrTheConvertersOwn) {
  int32_t value = 5;
  const auto failure = [&value](std::string_view text) {
    ConversionContext context(Registry());
    ReadJsonValue(context, "<value>", text, &value);
    return context.ErrorMessage();
  };
  EXPECT_EQ(failure("["), "Invalid value.");
  EXPECT_EQ(failure("\"x\""), "Value x for '<value>' of type int32 is in an incorrect format");
  EXPECT_EQ(value, 5);
}

}  // namespace
}  // namespace Kest
