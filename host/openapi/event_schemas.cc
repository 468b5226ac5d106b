#include "host/openapi/event_schemas.h"

#include <string>
#include <utility>

#include "base/utf8.h"
#include "host/library/c_views.h"
#include "host/openapi/route_path.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {
namespace {

using Object = JsonValue::Object;

constexpr int32_t kGet = 2;  // method id

Object UriSchema(const std::string& pathTemplate) {
  if (pathTemplate.find('{') == std::string::npos) {
    return {{"type", "string"}, {"const", pathTemplate}};
  }
  return {{"type", "string"}, {"pattern", PathPattern(pathTemplate)}};
}

Object EventSchema(const KestEndpoint& endpoint, const ApiHelp& help) {
  const std::string path = RepairUtf8(View(endpoint.pathTemplate));
  Object type = {{"type", "string"}, {"enum", JsonValue::Array{"Create", "Update", "Delete"}}};
  Object properties = {
      {"uri", UriSchema(path)},
      {"eventType", std::move(type)},
      {"data", ValueSchema(help, View(endpoint.result.name), View(endpoint.result.element))}};
  return {{"type", "object"},
          {"description", "A change of " + DocumentPath(path) + ". A deletion has no data."},
          {"properties", std::move(properties)},
          {"required", JsonValue::Array{"uri", "eventType"}}};
}

}  // namespace

JsonValue::Object ResourceEventSchemas(const KestApiDescriptor& api, const ApiHelp& help) {
  Object schemas;
  JsonValue::Array all;
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = api.endpoints[i];
    if (endpoint.methodId != kGet || endpoint.result.name.size == 0) continue;
    std::string name = SchemaName(View(endpoint.functionName)) + "Event";
    all.push_back(Object{{"$ref", "#/components/schemas/" + name}});
    schemas.push_back({std::move(name), EventSchema(endpoint, help)});
  }
  Object any = {{"description", "What an event of the kind \"resource\" tells."}};
  if (!all.empty()) any.push_back({"anyOf", std::move(all)});
  schemas.push_back({"ResourceEvent", std::move(any)});
  return schemas;
}

JsonValue::Object NamedEvents(const ApiHelp& help) {
  Object events;
  for (const EventHelp& event : help.events) {
    events.push_back(
        {event.name, Object{{"description", event.description},
                            {"payload", ValueSchema(help, event.type.name, event.type.element)}}});
  }
  return events;
}

}  // namespace Kest::Host
