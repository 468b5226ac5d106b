#include "api/dispatcher.h"

#include "binding/json/json_adapter.h"
#include "tests/api/sample_api.h"
#include "tests/support/log_capture.h"

namespace Kest::Sample {
namespace {

TEST(Dispatcher, AnswersEachResultWithItsStatus) {
  ExpectAnswers({{"nothing", "/succeed", "204 "},
                 {"reference", "/held",
                  "200 [{\"name\":\"first\",\"count\":1},{\"name\":\"second\",\"count\":2}]"},
                 {"no shared item", "/no-slot", "200 null"},
                 {"failure", "/fail?text=Gone&status=410", "410 Gone"},
                 {"not a number", "/no-number",
                  "500 Failed to convert type double to BindingProperty for serialization"},
                 {"unregistered type", "/no-type",
                  "500 Failed to convert type Kest::Sample::Unregistered to BindingProperty for "
                  "serialization"},
                 {"no such path", "/held/", "404 Not found"},
                 {"exception", "/throw/Torn", "500 Torn"},
                 {"exception without text", "/throw/nothing", "500 Internal server error"},
                 {"exception of another kind", "/throw/number", "500 Internal server error"}});
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
    const char* answer;
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
    EXPECT_EQ(Summary(api.dispatcher().Invoke(c.function, c.arguments)), c.answer) << c.why;
  }
}

TEST(Dispatcher, AnswersHelpInBothFormatsAndUnderBothNames) {
  const Api api;
  const auto help = [&api](const char* format) {
    const NamedValue value = {"format", {}, format, nullptr};
    return api.dispatcher().Invoke("$builtin.Help", {&value, 1});
  };
  const Response full = api.dispatcher().Invoke("$builtin.Help", {});
  EXPECT_EQ(help("Full"), full);
  EXPECT_EQ(api.dispatcher().Invoke("$builtin", "Help", {}), full);
  EXPECT_EQ(full.contentType, "application/json");
  ConversionContext context(TypeRegistry::Process());
  const BindingProperty tree = ReadJson(context, full.body);
  const BindingProperty& functions = tree.MemberValue(0);
  ASSERT_EQ(functions.Size(), api.dispatcher().Endpoints().size() + 1);
  EXPECT_EQ(functions.Element(0).FindMember("name")->AsString(), "Query");
  EXPECT_EQ(functions.Element(15).FindMember("nameSpace")->AsString(), "$builtin");
  EXPECT_EQ(tree.FindMember("types")->Element(15).FindMember("name")->AsString(), "Slot");

  const std::string text = help("2").body;
  for (const char* item :
       {"\"function Query\\r\\n@param o: (optional) \\r\\n@type o: object\\r\\n",
        "function $builtin.Help\\r\\nDescribes the API: E{lb}functions, types, eventsE{rb}, or all "
        "of it as epytext\\r\\n@param format: (optional) Full when absent\\r\\n@type format: "
        "L{BindingHelpFormat}\\r\\n@rtype: object\\r\\n@tags: $builtin, help\\r\\n\\r\\nenum B",
        "struct Slot\\r\\n", "event OnCallback: L{BindingCallbackEvent}\\r\\n"}) {
    EXPECT_THAT(text, testing::HasSubstr(item));
  }
}

TEST(Dispatcher, DescribesItsEndpointsInOrder) {
  const LogCapture log;
  const Api api;
  EXPECT_THAT(log.Lines(),
              testing::ElementsAre("  WARN|| Route /stray}/{name} has a parameter without a name"));
  const auto& endpoints = api.dispatcher().Endpoints();
  ASSERT_EQ(endpoints.size(), 15u);
  EXPECT_EQ(endpoints[9].function.Record().description, "What is held");
  EXPECT_EQ(endpoints[9].function.Record().returns.elementId, TypeId::kStruct);
  EXPECT_EQ(endpoints[8].function.Record().returns.id, TypeId::kNone);
  EXPECT_THAT(endpoints[6].function.Record().help, testing::HasSubstr("a pair of \\uXXXX"));
  EXPECT_EQ(endpoints[7].function.Record().help, "") << "no body";
  const auto& arguments = endpoints[6].function.Arguments();
  ASSERT_EQ(arguments.size(), 2u);
  EXPECT_EQ(endpoints[6].function.LocationOf(0), ArgumentLocation::kBody);
  EXPECT_EQ(arguments[0].type, (TypeIdentifier{TypeId::kVector, TypeId::kString, nullptr}));
  EXPECT_TRUE(!arguments[0].optional && arguments[1].optional);
}

}  // namespace
}  // namespace Kest::Sample
