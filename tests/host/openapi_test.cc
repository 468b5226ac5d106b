#include "host/openapi/openapi_document.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "host/json/json.h"
#include "host/openapi/control_description.h"
#include "host/openapi/route_path.h"
#include "plugin/text_view.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

// Of a plugin that was compiled with a later interface: its elements have a member more.
struct LaterArgument : KestArgument {
  KestText later = {};
};
struct LaterEndpoint : KestEndpoint {
  KestText later = {};
};

LaterArgument Argument(const char* name, const char* type, const char* element, int32_t location,
                       bool optional) {
  return {{ToText(name), {}, {ToText(type), ToText(element)}, location, optional}};
}

// A small made-up API.
const LaterArgument kFindArguments[] = {
    Argument("id", "int64", "", KEST_LOCATION_PATH, false),
    Argument("deep", "bool", "", KEST_LOCATION_QUERY, false),
    Argument("rest", "string", "", KEST_LOCATION_ANY, false),
    Argument("tags", "vector", "string", KEST_LOCATION_ANY, true)};
const LaterArgument kPutArguments[] = {Argument("boat", "Boat", "", KEST_LOCATION_BODY, false)};
const LaterArgument kOddArguments[] = {Argument("named", "string", "", KEST_LOCATION_PATH, false),
                                       Argument("rig", "Rig", "", KEST_LOCATION_QUERY, true),
                                       Argument("boat", "Boat", "", KEST_LOCATION_QUERY, true)};
const LaterEndpoint kEndpoints[] = {
    {{2, ToText("/b.c/{id}/{+rest}"), ToText("Find"), {}, kFindArguments, 4, {ToText("Boat"), {}}}},
    {{7, ToText("/b.c/{id}/{+rest}"), ToText("Put"), ToText("Stores \xff"), kPutArguments, 1, {}}},
    {{7, ToText("/b.c/{id}/{+rest}"), ToText("Never"), {}, nullptr, 0, {}}},
    {{2, ToText("/all"), ToText("All"), {}, nullptr, 0, {ToText("map"), ToText("Boat")}}},
    {{2,
      ToText("/un{named"),
      ToText("No \"more\""),
      {},
      kOddArguments,
      3,
      {ToText("vector"), ToText("map")}}},
    {{2, ToText("/}"), ToText("Nameless"), {}, nullptr, 0, {}}},
    {{3, ToText("{+x}"), ToText("Head"), {}, nullptr, 0, {ToText("Un\"known"), {}}}}};
const KestApiDescriptor kApi = {.size = sizeof(KestApiDescriptor),
                                .endpoints = kEndpoints,
                                .endpointCount = std::size(kEndpoints),
                                .eventNames = nullptr,
                                .eventNameCount = 0,
                                .request = nullptr,
                                .invoke = nullptr,
                                .release = nullptr,
                                .endpointSize = sizeof(LaterEndpoint),
                                .argumentSize = sizeof(LaterArgument),
                                .setLogging = nullptr,
                                .explain = nullptr};

constexpr std::string_view kHelp = R"({"functions":[{"name":"Find"}],"types":[
  {"name":"Rig","nameSpace":"N","description":"Sails.","fields":[],
   "values":[{"name":"Sloop","value":1},{"name":"None","value":0}]},
  {"name":"Boat","nameSpace":"","description":"","values":[],"fields":[
   {"name":"rig","description":"Its sails","type":{"type":"Rig","elementType":""},"optional":true},
   {"name":"at","description":"","type":{"type":"uint64","elementType":""},"optional":false},
   {"name":"crew","description":"","type":{"type":"vector","elementType":"int8"},"optional":true},
   {"name":"log","description":"Its log","type":{"type":"blob","elementType":""},"optional":true},
   {"name":"any","description":"","type":{"type":"object","elementType":""},"optional":true}]}],
  "events":[{"name":"OnSail","description":"D","type":{"type":"Boat","elementType":""}}]})";

std::string Made(std::string_view name, std::string_view help) {
  const auto text =
      MakeOpenApiDocument({.name = name, .version = "1.2.3", .api = &kApi, .help = help});
  return text ? text.GetValue() : text.GetFailure().text;
}

TEST(OpenApi, DescribesThePluginItsTypesAndEventsAndTheControls) {
  const std::string document = Made("boats", kHelp);
  EXPECT_TRUE(Testing::GoldenText("tests/host/openapi.json", ParseJson(document).dump(1) + "\n"));
}

TEST(OpenApi, AnUnreadableHelpAndAClashOfNamesAreSaid) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/unusable_help.txt",
                                   [](const std::string& help) { return Made("b", help); }));
}

// The controls that the tables of a document list: "| PUT `/_host/token` |".
std::set<std::string> ListedControls(const std::string& document) {
  const std::regex row("(^|\\n)\\| ([A-Z]+) `(/[^`]*)` \\|");
  std::set<std::string> listed;
  for (std::sregex_iterator match(document.begin(), document.end(), row), end; match != end;
       ++match) {
    EXPECT_TRUE(listed.insert((*match)[2].str() + " " + (*match)[3].str()).second) << match->str();
  }
  return listed;
}

TEST(Controls, AreThoseThatTheDocumentLists) {
  std::set<std::string> served;
  for (const ControlDescription& control : AllControls()) {
    served.insert(std::string(control.method).append(" ").append(control.path));
  }
  EXPECT_EQ(ListedControls(Testing::SourceText("docs/development-host.md")), served);
}

TEST(OpenApi, TemplatesBecomePathsAndPatterns) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/template_paths.txt", [](const std::string& text) {
    return DocumentPath(text) + " " + PathPattern(text);
  }));
}

}  // namespace
}  // namespace Kest::Host
