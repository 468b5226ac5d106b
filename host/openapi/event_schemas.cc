#include "host/openapi/event_schemas.h"

#include <string>
#include <utility>

#include "base/utf8.h"
#include "host/library/c_views.h"
#include "host/openapi/route_path.h"

namespace Kest::Host {
namespace {

constexpr int32_t kGet = 2;  // method id

Json UriSchema(const std::string& pathTemplate) {
  if (pathTemplate.find('{') == std::string::npos) {
    return {{"type", "string"}, {"const", pathTemplate}};
  }
  return {{"type", "string"}, {"pattern", PathPattern(pathTemplate)}};
}

Json EventSchema(const KestEndpoint& endpoint, const ApiHelp& help) {
  const std::string path = RepairUtf8(View(endpoint.pathTemplate));
  Json type = {{"type", "string"}, {"enum", {"Create", "Update", "Delete"}}};
  Json properties = {
      {"uri", UriSchema(path)},
      {"eventType", std::move(type)},
      {"data", ValueSchema(help, View(endpoint.result.name), View(endpoint.result.element))}};
  return {{"type", "object"},
          {"description", "A change of " + DocumentPath(path) + ". A deletion has no data."},
          {"properties", std::move(properties)},
          {"required", {"uri", "eventType"}}};
}

}  // namespace

NamedSchemas ResourceEventSchemas(const KestApiDescriptor& api, const ApiHelp& help) {
  NamedSchemas schemas;
  Json all = Json::array();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
    if (endpoint.methodId != kGet || endpoint.result.name.size == 0) continue;
    std::string name = SchemaName(View(endpoint.functionName)) + "Event";
    all.push_back({{"$ref", "#/components/schemas/" + name}});
    schemas.emplace_back(std::move(name), EventSchema(endpoint, help));
  }
  Json any = {{"description", "What an event of the kind \"resource\" reports."}};
  if (!all.empty()) any["anyOf"] = std::move(all);
  schemas.emplace_back("ResourceEvent", std::move(any));
  return schemas;
}

Json NamedEvents(const ApiHelp& help) {
  Json events = Json::object();
  for (const EventHelp& event : help.events) {
    events[event.name] = {{"description", event.description},
                          {"payload", ValueSchema(help, event.type.name, event.type.element)}};
  }
  return events;
}

}  // namespace Kest::Host
