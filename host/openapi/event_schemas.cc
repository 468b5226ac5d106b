#include "host/openapi/event_schemas.h"

#include <string>
#include <utility>

#include "base/utf8.h"
#include "host/openapi/route_path.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr int32_t kGet = 2;  // method id

Json UriSchema(const std::string& pathTemplate) {
  if (pathTemplate.find('{') == std::string::npos) {
    return {{"type", "string"}, {"const", pathTemplate}};
  }
  return {{"type", "string"}, {"pattern", PathPattern(pathTemplate)}};
}

Json Reference(const std::string& name) {
  return {{"$ref", "#/components/schemas/" + name}};
}

Json Object(const std::string& description, Json properties) {
  Json required = Json::array();
  for (const auto& [name, schema] : properties.items()) required.push_back(name);
  return {{"type", "object"},
          {"description", description},
          {"properties", std::move(properties)},
          {"required", std::move(required)}};
}

// Two schemas, so that a type made from them has the data exactly where it is, and their union.
void AppendEvent(const KestEndpoint& endpoint, const ApiHelp& help, const std::string& name,
                 NamedSchemas* schemas) {
  const std::string path = RepairUtf8(ToView(endpoint.pathTemplate));
  const std::string shown = DocumentPath(path);
  const std::string change = name + "ChangeEvent";
  const std::string deletion = name + "DeletionEvent";
  schemas->emplace_back(change,
                        Object("A new value of " + shown + ".",
                               {{"uri", UriSchema(path)},
                                {"eventType", {{"type", "string"}, {"enum", {"Create", "Update"}}}},
                                {"data", ValueSchema(help, ToView(endpoint.result.name),
                                                     ToView(endpoint.result.element))}}));
  schemas->emplace_back(
      deletion,
      Object("The end of " + shown + ".",
             {{"uri", UriSchema(path)}, {"eventType", {{"type", "string"}, {"const", "Delete"}}}}));
  schemas->emplace_back(name + "Event", Json{{"description", "What happens to " + shown + "."},
                                             {"anyOf", {Reference(change), Reference(deletion)}}});
}

}  // namespace

NamedSchemas ResourceEventSchemas(const KestApiDescriptor& api, const ApiHelp& help) {
  NamedSchemas schemas;
  Json all = Json::array();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
    if (endpoint.methodId != kGet || endpoint.result.name.size == 0) continue;
    const std::string name = SchemaName(ToView(endpoint.functionName));
    AppendEvent(endpoint, help, name, &schemas);
    all.push_back(Reference(name + "Event"));
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
