#include "host/openapi/operations.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "base/utf8.h"
#include "host/c_views.h"
#include "host/openapi/route_path.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {
namespace {

using Object = JsonValue::Object;

// By method id.
constexpr std::string_view kMethods[] = {"",        "delete", "get",  "head",
                                         "options", "patch",  "post", "put"};
constexpr std::string_view kBodyTypes[] = {"application/json", "application/x-yaml",
                                           "application/x-msgpack"};
constexpr std::string_view kAnswerTypes[] = {"application/json", "application/x-msgpack"};

std::string Words(KestText text) {
  return RepairUtf8(View(text));
}

Object SchemaOf(const KestTypeName& type) {
  return ValueSchema(View(type.name), View(type.element));
}

// The same schema in each of the content types.
template <size_t Count>
Object Contents(const std::string_view (&types)[Count], const Object& schema) {
  Object contents;
  for (const std::string_view type : types) {
    contents.push_back({std::string(type), Object{{"schema", schema}}});
  }
  return contents;
}

// Where an argument stands in a request; one that may stand anywhere is shown where it fits.
std::string_view PlaceOf(const KestEndpoint& endpoint, const KestArgument& argument) {
  switch (argument.location) {
    case KEST_LOCATION_PATH:
      return "path";
    case KEST_LOCATION_HEADER:
      return "header";
    case KEST_LOCATION_BODY:
      return "body";
    case KEST_LOCATION_QUERY:
      return "query";
    default:
      return HasParameter(View(endpoint.pathTemplate), View(argument.name)) ? "path" : "query";
  }
}

// Outside a body, lists and free values are written as JSON text.
bool IsWrittenAsJson(std::string_view type) {
  return type == "vector" || type == "map" || type == "object";
}

Object ParameterOf(const KestEndpoint& endpoint, const KestArgument& argument,
                   std::string_view place) {
  std::string description = Words(argument.description);
  if (IsRestParameter(View(endpoint.pathTemplate), View(argument.name))) {
    description += (description.empty() ? "" : ". ") + std::string("May hold slashes.");
  }
  // A bool that is not given is false.
  const bool required =
      place == "path" || !(argument.optional || View(argument.type.name) == "bool");
  Object parameter = {{"name", Words(argument.name)}, {"in", place}, {"required", required}};
  if (!description.empty()) parameter.push_back({"description", std::move(description)});
  Object schema = SchemaOf(argument.type);
  if (IsWrittenAsJson(View(argument.type.name))) {
    parameter.push_back(
        {"content", Object{{"application/json", Object{{"schema", std::move(schema)}}}}});
  } else {
    parameter.push_back({"schema", std::move(schema)});
  }
  return parameter;
}

Object BodyOf(const KestArgument& argument) {
  Object body = {{"required", !argument.optional},
                 {"content", Contents(kBodyTypes, SchemaOf(argument.type))}};
  if (argument.description.size > 0) {
    body.push_back({"description", Words(argument.description)});
  }
  return body;
}

Object ResponsesOf(const KestEndpoint& endpoint) {
  Object responses;
  if (endpoint.result.name.size > 0) {
    responses.push_back(
        {"200", Object{{"description", "The result"},
                       {"content", Contents(kAnswerTypes, SchemaOf(endpoint.result))}}});
  } else {
    responses.push_back({"204", Object{{"description", "Done; there is no result"}}});
  }
  responses.push_back({"default", Object{{"$ref", "#/components/responses/Problem"}}});
  return responses;
}

Object OperationOf(const KestEndpoint& endpoint, std::string_view tag) {
  Object operation = {{"operationId", Words(endpoint.functionName)},
                      {"tags", JsonValue::Array{tag}}};
  if (endpoint.description.size > 0) {
    operation.push_back({"summary", Words(endpoint.description)});
  }
  JsonValue::Array parameters;
  Object body;
  for (size_t i = 0; i < endpoint.argumentCount; ++i) {
    const KestArgument& argument = endpoint.arguments[i];
    const std::string_view place = PlaceOf(endpoint, argument);
    if (place == "body") {
      body = BodyOf(argument);
    } else {
      parameters.push_back(ParameterOf(endpoint, argument, place));
    }
  }
  if (!parameters.empty()) operation.push_back({"parameters", std::move(parameters)});
  if (!body.empty()) operation.push_back({"requestBody", std::move(body)});
  operation.push_back({"responses", ResponsesOf(endpoint)});
  return operation;
}

// The member of that name, made when there is none.
JsonValue& MemberOf(Object& object, const std::string& name) {
  const auto found = std::find_if(object.begin(), object.end(),
                                  [&name](const auto& member) { return member.name == name; });
  if (found != object.end()) return found->value;
  return object.emplace_back(JsonValue::Member{name, Object()}).value;
}

}  // namespace

JsonValue::Object PluginPaths(const KestApiDescriptor& api, std::string_view tag) {
  Object paths;
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = api.endpoints[i];
    const auto method = static_cast<size_t>(endpoint.methodId);
    if (method == 0 || method >= std::size(kMethods)) continue;
    JsonValue& path = MemberOf(paths, DocumentPath(Words(endpoint.pathTemplate)));
    if (path.Find(kMethods[method]) != nullptr) continue;
    path.AsObject()->push_back({std::string(kMethods[method]), OperationOf(endpoint, tag)});
  }
  return paths;
}

}  // namespace Kest::Host
