#include "host/openapi/openapi_document.h"

#include <array>
#include <utility>

#include "base/utf8.h"
#include "host/json/json.h"
#include "host/openapi/api_help.h"
#include "host/openapi/control_operations.h"
#include "host/openapi/event_schemas.h"
#include "host/openapi/operations.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kDescription =
    "Responses hold every member of their schema. Requests are read leniently: members may be left "
    "out, unknown ones are ignored, and numbers, booleans and enumerators may also be strings. "
    "Ask for `Accept: application/x-msgpack` to get the same values as MessagePack.";
constexpr std::string_view kHostDescription =
    "The host's own endpoints: events, help, and controls of the emulated platform.";

Maybe<Json> AllSchemas(const KestApiDescriptor& api, const ApiHelp& help) {
  Json all = Json::object();
  std::array parts = {TypeSchemas(help), ResourceEventSchemas(api, help), ControlSchemas()};
  for (NamedSchemas& part : parts) {
    for (auto& [name, schema] : part) {
      if (all.contains(name)) return Failure{"Two schemas are named " + name + "."};
      all[name] = std::move(schema);
    }
  }
  return all;
}

Json SharedResponses() {
  const Json schema = {{"$ref", "#/components/schemas/Problem"}};
  return {{"Problem",
           {{"description", "A failure"},
            {"content", {{"application/problem+json", {{"schema", schema}}}}}}},
          {"NotModified",
           {{"description", "The result still has the `ETag` that `If-None-Match` names"}}}};
}

}  // namespace

Maybe<std::string> MakeOpenApiDocument(const DescribedPlugin& plugin) {
  const auto help = ReadApiHelp(plugin.help);
  if (!help) return help.GetFailure();
  const std::string name = RepairUtf8(plugin.name);
  auto schemas = AllSchemas(*plugin.api, help.GetValue());
  if (!schemas) return schemas.GetFailure();
  Json paths = PluginPaths(*plugin.api, help.GetValue(), name);
  paths.update(ControlPaths());
  const Json tags = {{{"name", name}, {"description", "The plugin's endpoints"}},
                     {{"name", kControlTag}, {"description", kHostDescription}}};
  return WriteJson(Json{
      {"openapi", "3.1.0"},
      {"info",
       {{"title", name}, {"version", RepairUtf8(plugin.version)}, {"description", kDescription}}},
      {"servers", Json::array({{{"url", "/"}}})},
      {"security", Json::array()},
      {"tags", tags},
      {"paths", std::move(paths)},
      {"components",
       {{"schemas", std::move(schemas.GetValue())}, {"responses", SharedResponses()}}},
      {"x-events", NamedEvents(help.GetValue())}});
}

}  // namespace Kest::Host
