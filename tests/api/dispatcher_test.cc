#include "api/dispatcher.h"

#include "tests/api/sample_api.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/golden.h"
#include "tests/support/log_capture.h"

namespace Kest::Sample {
namespace {

TEST(Dispatcher, EncodesEachResult) {
  const Api api;
  EXPECT_EQ(api.Get("/no-slot"), (Response{200, "", "application/json", "null"}));
  EXPECT_EQ(api.Get("/succeed"), (Response{204, "", "", ""}));
  for (const char* method : {"POST", "get"}) {
    EXPECT_EQ(api.dispatcher().Handle({method, "/held", {}, {}, {}, {}}).status, 404);
  }
  const auto packed = [&api](std::string_view url) {
    return api.dispatcher().Handle({"GET", url, {}, {}, "application/x-msgpack", {}});
  };
  EXPECT_EQ(packed("/no-slot"), (Response{200, "", "application/x-msgpack", "\xC0"}));
  EXPECT_EQ(packed("/no-number").body, std::string("\xCA\x7F\xC0\0\0", 5));
  EXPECT_EQ(packed("/no-type").contentType, "") << "failures have no encoding";

  const LogCapture log;
  EXPECT_EQ(Summary(api.Get("/throw/memory")), "500 Out of memory");
  EXPECT_THAT(log.Lines(), testing::ElementsAre(" ERROR|| /throw/memory: Out of memory"));

  std::string body(kMaxBodyBytes + 1, '[');
  EXPECT_EQ(Summary(api.Get("/body", "text/plain", body)), "413 Body is too large");
  body.pop_back();
  EXPECT_EQ(api.Get("/body", "text/plain", body).status, 400);
}

TEST(Dispatcher, InvokesByNameWithNamedAndPlacedArguments) {
  const BindingProperty number = BindingProperty::FromSigned(5);
  const BindingProperty text = BindingProperty::FromString("[\"x\"]");
  const auto named = [](auto name, const char* value, const char* contentType = "") {
    return NamedValue{name, contentType, value, nullptr};
  };
  const auto placed = std::bind_front(named, std::nullopt);
  const struct {
    const char *why, *function;
    std::vector<NamedValue> arguments;
    const char* response;
  } kCases[] = {
      {"named", "Path", {named("number", "0x10"), named("id", "a%20")}, "200 \"a%20:16\""},
      {"placed, an empty text is one", "Path", {placed(""), placed("1")}, "200 \":1\""},
      {"value", "Path", {placed("a"), {std::nullopt, {}, {}, &number}}, "200 \"a:5\""},
      {"text as value", "Body", {{"items", {}, {}, &text}}, "200 [\"x\"]"},
      {"place counts named ones", "Path", {named("id", "a"), placed("2")}, "200 \"a:2\""},
      {"too many", "Succeed", {placed("1")}, "400 Unknown argument '0' for 'Succeed'."},
      {"unknown", "SetFlag", {named("x", "1")}, "400 Unknown argument 'x' for 'SetFlag'."},
      {"member path", "Body", {named("items.1", "b"), named("items.0", "a")}, "200 [\"a\",\"b\"]"},
      {"content type", "SetFlag", {placed("true", "application/json")}, "200 true"},
      {"YAML by its content type", "SetFlag", {placed("True", "text/x-yaml")}, "200 true"},
      {"bool starts as false", "SetFlag", {}, "200 false"},
      {"missing", "Path", {placed("a")}, "400 A value for 'number' is required."},
      {"unknown function", "path", {}, "404 Invalid function"},
      {"unknown built-in", "$builtin.help", {}, "404 Unsupported builtin function"},
      {"namespace alone", "$builtin", {}, "404 Invalid function"},
      {"built-in argument",
       "$builtin.Help",
       {named("as", "Full")},
       "400 Unknown argument 'as' for 'Help'."},
      {"no such format",
       "$builtin.Help",
       {placed("0")},
       "400 0 is not a valid BindingHelpFormat enumeration value for 'format'."},
  };
  const Api api;
  for (const auto& c : kCases) {
    EXPECT_EQ(Summary(api.dispatcher().Invoke(c.function, c.arguments)), c.response) << c.why;
  }
}

TEST(Dispatcher, GivesHelpInBothFormatsAndUnderBothNames) {
  const Api api;
  const auto help = [&api](const char* format) {
    const NamedValue value = {"format", {}, format, nullptr};
    return api.dispatcher().Invoke("$builtin.Help", {&value, 1});
  };
  const Response full = api.dispatcher().Invoke("$builtin.Help", {});
  EXPECT_EQ(help("Full"), full);
  EXPECT_EQ(api.dispatcher().Invoke("$builtin", "Help", {}), full);
  EXPECT_EQ(full.contentType, "application/json");
  const BindingProperty tree = Samples::Tree(full.body);
  std::string functions;
  for (size_t i = 0; i < tree.MemberValue(0).Size(); ++i) {
    functions += Samples::Json(tree.MemberValue(0).Element(i)) + "\n";
  }
  EXPECT_TRUE(Testing::GoldenText("tests/api/functions.txt", functions));
  EXPECT_EQ(tree.FindMember("types")->Element(15).FindMember("name")->AsString(), "Slot");

  const std::string text = help("2").body;
  EXPECT_THAT(text, testing::HasSubstr("\"function Query\\r\\n@param o: (optional) \\r\\n"));
  EXPECT_THAT(text, testing::HasSubstr("event OnCallback: L{BindingCallbackEvent}\\r\\n"));
}

TEST(Dispatcher, WarnsOfParametersWithoutNames) {
  const LogCapture log;
  const Api api;
  EXPECT_THAT(log.Lines(),
              testing::ElementsAre("  WARN|| Route /stray}/{name} has a parameter without a name"));
  EXPECT_EQ(api.dispatcher().Endpoints()[6].function.LocationOf(0), ArgumentLocation::kBody);
}

}  // namespace
}  // namespace Kest::Sample
