#include "host/openapi/openapi_document.h"

#include <gtest/gtest.h>

#include "host/host_control.h"
#include "host/library/c_views.h"
#include "host/openapi/event_schemas.h"
#include "host/openapi/operations.h"
#include "host/openapi/route_path.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {
namespace {

KestArgument Argument(const char* name, const char* type, const char* element, int32_t location,
                      bool optional) {
  return {Text(name), {}, {Text(type), Text(element)}, location, optional};
}

// A small made-up API.
const KestArgument kFindArguments[] = {
    Argument("id", "int64", "", KEST_LOCATION_PATH, false),
    Argument("deep", "bool", "", KEST_LOCATION_QUERY, false),
    Argument("rest", "string", "", KEST_LOCATION_ANY, false),
    Argument("tags", "vector", "string", KEST_LOCATION_ANY, true)};
const KestArgument kPutArguments[] = {Argument("boat", "Boat", "", KEST_LOCATION_BODY, false)};
const KestArgument kOddArguments[] = {Argument("named", "string", "", KEST_LOCATION_PATH, false),
                                      Argument("rig", "Rig", "", KEST_LOCATION_QUERY, true),
                                      Argument("boat", "Boat", "", KEST_LOCATION_QUERY, true)};
const KestEndpoint kEndpoints[] = {
    {2, Text("/b.c/{id}/{+rest}"), Text("Find"), {}, kFindArguments, 4, {Text("Boat"), {}}},
    {7, Text("/b.c/{id}/{+rest}"), Text("Put"), Text("Stores \xff"), kPutArguments, 1, {}},
    {7, Text("/b.c/{id}/{+rest}"), Text("Never"), {}, nullptr, 0, {}},
    {2, Text("/all"), Text("All"), {}, nullptr, 0, {Text("map"), Text("Boat")}},
    {2,
     Text("/un{named"),
     Text("No \"more\""),
     {},
     kOddArguments,
     3,
     {Text("vector"), Text("map")}},
    {2, Text("/}"), Text("Nameless"), {}, nullptr, 0, {}},
    {3, Text("{+x}"), Text("Head"), {}, nullptr, 0, {Text("Un\"told"), {}}}};
const KestApiDescriptor kApi = {.size = sizeof(KestApiDescriptor),
                                .endpoints = kEndpoints,
                                .endpointCount = std::size(kEndpoints),
                                .eventNames = nullptr,
                                .eventNameCount = 0,
                                .request = nullptr,
                                .invoke = nullptr,
                                .release = nullptr};

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
  const auto text = MakeOpenApiDocument(
      {.name = name, .version = "1.2.3", .api = &kApi, .help = help}, HostControl::AllControls());
  return text ? text.GetValue() : text.GetFailure().text;
}

TEST(OpenApi, EndpointsBecomeOperationsWithTheirParametersByPlace) {
  EXPECT_EQ(
      WriteJson(PluginPaths(kApi, ReadApiHelp(kHelp).GetValue(), "t")),
      R"({"/b.c/{id}/{rest}":{"get":{"operationId":"Find","tags":["t"],"parameters":[)"
      R"({"name":"id","in":"path","required":true,"schema":{"$ref":"#/components/schemas/int64"}},)"
      R"({"name":"deep","in":"query","required":false,"schema":{"type":"boolean"}},)"
      R"({"name":"rest","in":"path","required":true,"description":"May hold slashes.",)"
      R"("schema":{"type":"string"}},)"
      R"({"name":"tags","in":"query","required":false,"content":{"application/json":{"schema":)"
      R"({"type":"array","items":{"type":"string"}}}}}],)"
      R"("responses":{"200":{"description":"The result","content":{)"
      R"("application/json":{"schema":{"$ref":"#/components/schemas/Boat"}},)"
      R"("application/x-msgpack":{"schema":{"$ref":"#/components/schemas/Boat"}}}},)"
      R"("default":{"$ref":"#/components/responses/Problem"}}},)"
      R"("put":{"operationId":"Put","tags":["t"],"summary":"Stores )"
      "\xEF\xBF\xBD"
      R"(","parameters":[{"name":"id","in":"path","required":true,"schema":{"type":"string"}},)"
      R"({"name":"rest","in":"path","required":true,"schema":{"type":"string"}}],)"
      R"("requestBody":{"required":true,"content":{)"
      R"("application/json":{"schema":{"$ref":"#/components/schemas/Boat"}},)"
      R"("application/vnd.api+json":{"schema":{"$ref":"#/components/schemas/Boat"}},)"
      R"("application/x-yaml":{"schema":{"$ref":"#/components/schemas/Boat"}},)"
      R"("application/x-msgpack":{"schema":{"$ref":"#/components/schemas/Boat"}}}},)"
      R"("responses":{"204":{"description":"Done; there is no result"},)"
      R"("default":{"$ref":"#/components/responses/Problem"}}}},)"
      R"("/all":{"get":{"operationId":"All","tags":["t"],"responses":{"200":{"description":"The result",)"
      R"("content":{"application/json":{"schema":{"type":"object","additionalProperties":)"
      R"({"$ref":"#/components/schemas/Boat"}}},"application/x-msgpack":{"schema":{"type":"object",)"
      R"("additionalProperties":{"$ref":"#/components/schemas/Boat"}}}}},)"
      R"("default":{"$ref":"#/components/responses/Problem"}}}},)"
      // A path cannot hold "named" as nothing closes it; texts and a boat can stand in a query.
      R"("/un":{"get":{"operationId":"No \"more\"","tags":["t"],"parameters":[)"
      R"({"name":"rig","in":"query","required":false,"schema":{"$ref":"#/components/schemas/Rig"}},)"
      R"({"name":"boat","in":"query","required":false,"content":{"application/json":{"schema":)"
      R"({"$ref":"#/components/schemas/Boat"}}}}],"responses":{"200":{"description":"The result",)"
      R"("content":{"application/json":{"schema":{"type":"array","items":{"type":"object"}}},)"
      R"("application/x-msgpack":{"schema":{"type":"array","items":{"type":"object"}}}}},)"
      R"("default":{"$ref":"#/components/responses/Problem"}}}},)"
      // What Help does not tell may be anything.
      R"("/{x}":{"head":{"operationId":"Head","tags":["t"],"parameters":[)"
      R"({"name":"x","in":"path","required":true,"schema":{"type":"string"}}],)"
      R"("responses":{"200":{"description":"The result","content":{"application/json":{"schema":{}},)"
      R"("application/x-msgpack":{"schema":{}}}},)"
      R"("default":{"$ref":"#/components/responses/Problem"}}}}})");
}

TEST(OpenApi, TypesAndEventsBecomeSchemas) {
  const std::string document = Made("boats", kHelp);
  for (
      const char* part :
      {R"({"openapi":"3.1.0","info":{"title":"boats","version":"1.2.3",)",
       R"("int64":{"type":"integer","format":"int64","minimum":-9223372036854775808,"maximum":9223372036854775807,)",
       R"("uint64":{"type":"integer","format":"uint64","minimum":0,"maximum":18446744073709551615,)",
       R"("Rig":{"type":"string","enum":["Sloop","None"],"description":"Sails.","x-nameSpace":"N"},)",
       R"("Boat":{"type":"object","properties":{"rig":{"$ref":"#/components/schemas/Rig","description":"Its sails"},)"
       R"("at":{"$ref":"#/components/schemas/uint64"},"crew":{"type":"array","items":{"type":"integer",)"
       R"("format":"int8","minimum":-128,"maximum":127}},"log":{"type":"string","description":"Its log. Bytes; in JSON a text made of them."},"any":{}},)"
       R"("required":["rig","at","crew","log","any"],)"
       R"("description":"When it is sent, these members must be there: at."})",
       R"("uri":{"type":"string","pattern":"^/b\\.c/[^/]*/.*$"})",
       R"("uri":{"type":"string","const":"/all"})",
       R"("ResourceEvent":{"description":"What an event of the kind \"resource\" reports.","anyOf":)"
       R"([{"$ref":"#/components/schemas/FindEvent"},{"$ref":"#/components/schemas/AllEvent"},)"
       R"({"$ref":"#/components/schemas/No__more_Event"}]})",
       R"("x-events":{"OnSail":{"description":"D","payload":{"$ref":"#/components/schemas/Boat"}}})",
       R"("/_host/events":{"get":{)", R"("Problem":{"type":"object")"}) {
    EXPECT_NE(document.find(part), std::string::npos) << part;
  }
}

TEST(OpenApi, AnUnreadableHelpAndAClashOfNamesAreSaid) {
  EXPECT_EQ(Made("b", "{"), "help is not JSON");
  EXPECT_EQ(Made("b", R"({"types":[{"name":"A","fields":[{"name":"b"}]}]})"),
            R"(help.types.0.fields.0 has no member "type")");
  EXPECT_EQ(Made("b", R"({"types":[{"name":"Problem"}]})"), "Two schemas are named Problem.");
}

TEST(OpenApi, TemplatesBecomePathsAndPatterns) {
  struct Case {
    const char *why, *pathTemplate, *path, *pattern;
  };
  const Case kCases[] = {{"a fragment keeps its mark", "/a{#f}", "/a#{f}", "^/a#.*$"},
                         {"a plus inside a name is part of it", "/{a+b}", "/{a+b}", "^/[^/]*$"},
                         {"so is a mark behind it", "/{a+b}{c#}", "/{a+b}{c#}", "^/[^/]*[^/]*$"},
                         {"the last opening brace counts", "/{a{+b}", "/{b}", "^/.*$"},
                         {"what is not closed is nothing", "/{a", "/", "^/$"},
                         {"nor is what is not opened", "/a}", "/a", "^/a$"},
                         {"a path begins with a slash", "{+a}", "/{a}", "^.*$"},
                         {"all else is literal", "/a.$", "/a.$", "^/a\\.\\$$"}};
  for (const Case& c : kCases) {
    EXPECT_EQ(DocumentPath(c.pathTemplate), c.path) << c.why;
    EXPECT_EQ(PathPattern(c.pathTemplate), c.pattern) << c.why;
  }
}

}  // namespace
}  // namespace Kest::Host
