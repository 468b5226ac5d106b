#include "api/dispatcher.h"

#include <deque>
#include <sstream>

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
  const Api api;
  EXPECT_TRUE(Testing::GoldenCases("tests/api/invocations.txt", [&](const std::string& input) {
    std::istringstream lines(input);
    std::string function;
    std::getline(lines, function);
    std::deque<std::string> words;
    std::vector<NamedValue> arguments;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream parts(line);
      for (const char end : {'=', '|', '\n'}) std::getline(parts, words.emplace_back(), end);
      const std::string &name = *(words.end() - 3), &value = *(words.end() - 2);
      arguments.push_back({std::nullopt, words.back(), value, nullptr});
      if (!name.empty()) arguments.back().name = name;
    }
    return Summary(api.dispatcher().Invoke(function, arguments));
  }));
  const BindingProperty number = BindingProperty::FromSigned(5);
  const NamedValue values[] = {{std::nullopt, {}, "a", nullptr}, {std::nullopt, {}, {}, &number}};
  EXPECT_EQ(Summary(api.dispatcher().Invoke("Path", values)), R"(200 "a:5")");
  const BindingProperty text = BindingProperty::FromString("[\"x\"]");
  const NamedValue items = {"items", {}, {}, &text};
  EXPECT_EQ(Summary(api.dispatcher().Invoke("Body", {&items, 1})), R"(200 ["x"])");
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
