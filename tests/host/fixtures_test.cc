// The modules that are made from what the plugin returns. script/check-fixtures has TypeScript read
// them.
#include <gtest/gtest.h>

#include <map>
#include <regex>

#include "host/clock/time_text.h"
#include "host/fixtures/fixture_files.h"
#include "host/fixtures/typescript_types.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

FixtureSet Record(const std::string& scenario) {
  HostLog log(stderr, LogLevel::kNone);
  DevelopmentHost host({.pluginPath = LOOT_PLUGIN,
                        .worldPath = "",
                        .port = 0,
                        .clock = {ClockMode::kFrozen, 1, ParseTime("2030-01-01T12:00:00Z")},
                        .scenario = scenario},
                       &log);
  const auto started = host.Start();
  EXPECT_TRUE(started) << started.GetFailure().text;
  auto set = RecordFixtures(host);
  EXPECT_TRUE(host.Stop());
  EXPECT_TRUE(set) << set.GetFailure().text;
  return set ? std::move(set.GetValue()) : FixtureSet();
}

// "GET /path 200 x45, 404 x1" for each route.
std::string Summary(const FixtureSet& set) {
  std::string summary;
  for (const FixtureRoute& route : set.routes) {
    std::map<int, int> counts;
    for (const FixtureCall& call : route.calls) ++counts[call.status];
    summary += route.Name();
    for (const auto& [status, count] : counts) {
      summary.append(" ").append(std::to_string(status)).append(" x").append(std::to_string(count));
    }
    summary += "\n";
  }
  return summary;
}

TEST(Fixtures, HoldEveryRouteInEachWorldAndAreTheSameEachTime) {
  const FixtureSet sample = Record("sample");
  std::string summary = "sample\n" + Summary(sample);
  for (const char* scenario : {"every-status", "service-down"}) {
    SCOPED_TRACE(scenario);
    const FixtureSet set = Record(scenario);
    summary.append(scenario).append("\n").append(Summary(set));
    const auto files = FixtureFiles(set, sample, "A test.");
    const auto again = FixtureFiles(Record(scenario), sample, "A test.");
    ASSERT_EQ(files.size(), again.size());
    for (size_t i = 0; i < files.size(); ++i) {
      EXPECT_EQ(files[i].text, again[i].text) << files[i].name;
      const bool lacksValues = std::regex_search(files[i].text, std::regex("\n \"\\w+\": \\[\\]"));
      EXPECT_FALSE(files[i].name == "samples.ts" && lacksValues);
    }
  }
  EXPECT_TRUE(Testing::GoldenText("tests/host/fixtures.txt", summary));
}

TEST(Fixtures, SchemasBecomeTypes) {
  const std::pair<const char*, const char*> kCases[] = {
      {R"({})", "unknown"},
      {R"({"type":"integer","format":"int32"})", "number"},
      {R"({"type":["string","null"]})", "string | null"},
      {R"({"const":"Delete"})", R"("Delete")"},
      {R"({"type":"array","items":{"type":"string","enum":["a","b"]}})", R"(("a" | "b")[])"},
      {R"({"type":"array"})", "unknown[]"},
      {R"({"type":"object"})", "{ [name: string]: unknown }"},
      {R"({"type":"object","additionalProperties":{"type":"boolean"}})",
       "{ [name: string]: boolean }"},
      {R"({"type":"object","properties":{"a-b":{"type":"null"}}})", R"({ "a-b": null })"},
      {R"({"anyOf":[{"$ref":"#/components/schemas/A.b"},{"type":"number"}]})", "A_b | number"}};
  for (const auto& [schema, type] : kCases) {
    EXPECT_EQ(TypeScriptType(ParseJson(schema)), type) << schema;
  }
  EXPECT_EQ(
      TypeScriptDeclaration("1.x", ParseJson(R"({"description":"Ends */ here",
      "properties":{"a":{"type":"string"},"b c":{}},"required":["a"]})")),
      "/** Ends * / here */\nexport interface _1_x {\n  a: string;\n  \"b c\"?: unknown;\n}\n");
}

}  // namespace
}  // namespace Kest::Host
