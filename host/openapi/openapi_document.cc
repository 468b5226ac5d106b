#include "host/openapi/openapi_document.h"

#include <iterator>
#include <set>
#include <utility>

#include "base/utf8.h"
#include "host/openapi/api_help.h"
#include "host/openapi/development_host_text.h"
#include "host/openapi/event_schemas.h"
#include "host/openapi/operations.h"
#include "host/openapi/type_schemas.h"
#include "host/world/json/json_reader.h"
#include "host/world/json/json_value.h"

namespace Kest::Host {
namespace {

using Object = JsonValue::Object;

constexpr std::string_view kDescription =
    "Answers hold every member of their schema. Requests are read leniently: members may be left "
    "out, unknown ones are passed over, and numbers, booleans and enumerators may also be texts. "
    "Ask for `Accept: application/x-msgpack` to get the same values as MessagePack.";

// Moves the members of `part`, which is no object when it is missing, behind those of `whole`.
void Append(JsonValue* part, Object* whole) {
  Object* const members = part == nullptr ? nullptr : part->AsObject();
  if (members == nullptr) return;
  whole->insert(whole->end(), std::make_move_iterator(members->begin()),
                std::make_move_iterator(members->end()));
}

JsonValue* FindIn(JsonValue& object, std::string_view name) {
  for (JsonValue::Member& member : *object.AsObject()) {
    if (member.name == name) return &member.value;
  }
  return nullptr;
}

// A name that stands twice, or an empty text.
std::string RepeatedName(const Object& object) {
  std::set<std::string_view> names;
  for (const JsonValue::Member& member : object) {
    if (!names.insert(member.name).second) return member.name;
  }
  return "";
}

}  // namespace

Maybe<std::string> MakeOpenApiDocument(const DescribedPlugin& plugin) {
  auto help = ReadApiHelp(plugin.help);
  if (!help) return help.GetFailure();
  auto hostPart = ReadJson(kDevelopmentHostText);
  if (!hostPart) return Failure{DescribeIssue("development host", hostPart.GetFailure())};
  JsonValue& host = hostPart.GetValue();

  const std::string name = RepairUtf8(plugin.name);
  Object schemas = TypeSchemas(help.GetValue());
  JsonValue events = ResourceEventSchemas(*plugin.api, help.GetValue());
  Append(&events, &schemas);
  Append(FindIn(host, "schemas"), &schemas);
  if (const std::string twice = RepeatedName(schemas); !twice.empty()) {
    return Failure{"Two schemas are named " + twice + "."};
  }
  Object paths = PluginPaths(*plugin.api, help.GetValue(), name);
  Append(FindIn(host, "paths"), &paths);

  JsonValue::Array tags = {Object{{"name", name}, {"description", "The plugin's endpoints"}}};
  tags.push_back(std::move(*FindIn(host, "tag")));
  return WriteJson(
      Object{{"openapi", "3.1.0"},
             {"info", Object{{"title", name},
                             {"version", RepairUtf8(plugin.version)},
                             {"description", kDescription}}},
             {"servers", JsonValue::Array{Object{{"url", "/"}}}},
             {"security", JsonValue::Array()},
             {"tags", std::move(tags)},
             {"paths", std::move(paths)},
             {"components", Object{{"schemas", std::move(schemas)},
                                   {"responses", std::move(*FindIn(host, "responses"))}}},
             {"x-events", NamedEvents(help.GetValue())}});
}

}  // namespace Kest::Host
