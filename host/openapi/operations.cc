#include "host/openapi/operations.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/utf8.h"
#include "host/library/methods.h"
#include "host/openapi/route_path.h"
#include "host/openapi/type_schemas.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kBodyTypes[] = {"application/json", "application/vnd.api+json",
                                           "application/x-yaml", "application/x-msgpack"};
constexpr std::string_view kResultTypes[] = {"application/json", "application/x-msgpack"};

std::string Words(KestText text) {
  return RepairUtf8(ToView(text));
}

// An endpoint and what is known around it.
struct Described {
  const KestApiDescriptor& api;
  const KestEndpoint& endpoint;
  const ApiHelp& help;
  std::vector<PathParameter> pathParameters;

  const PathParameter* FindPathParameter(std::string_view name) const {
    const auto found = std::find_if(pathParameters.begin(), pathParameters.end(),
                                    [name](const auto& known) { return known.name == name; });
    return found == pathParameters.end() ? nullptr : &*found;
  }
  Json Schema(const KestTypeName& type) const {
    return ValueSchema(help, ToView(type.name), ToView(type.element));
  }
};

// The same schema in each of the content types.
template <size_t Count>
Json Contents(const std::string_view (&types)[Count], const Json& schema) {
  Json contents = Json::object();
  for (const std::string_view type : types) {
    contents[std::string(type)] = {{"schema", schema}};
  }
  return contents;
}

// Where a request holds an argument; one that may be anywhere is shown where it fits.
std::string_view PlaceOf(const Described& route, const KestArgument& argument) {
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
      return route.FindPathParameter(ToView(argument.name)) != nullptr ? "path" : "query";
  }
}

Json ParameterOf(const Described& route, const KestArgument& argument, std::string_view place) {
  std::string description = Words(argument.description);
  const PathParameter* const inPath = route.FindPathParameter(ToView(argument.name));
  if (inPath != nullptr && inPath->isRest) {
    description += (description.empty() ? "" : ". ") + std::string("May hold slashes.");
  }
  // A bool that is not given is false.
  const bool required =
      place == "path" || !(argument.optional || ToView(argument.type.name) == "bool");
  Json parameter = {{"name", Words(argument.name)}, {"in", place}, {"required", required}};
  if (!description.empty()) parameter["description"] = std::move(description);
  Json schema = route.Schema(argument.type);
  // Outside a body such a value is written as JSON text.
  if (IsComposite(route.help, ToView(argument.type.name))) {
    parameter["content"] = {{"application/json", {{"schema", std::move(schema)}}}};
  } else {
    parameter["schema"] = std::move(schema);
  }
  return parameter;
}

Json BodyOf(const Described& route, const KestArgument& argument) {
  Json body = {{"required", !argument.optional},
               {"content", Contents(kBodyTypes, route.Schema(argument.type))}};
  if (argument.description.size > 0) {
    body["description"] = Words(argument.description);
  }
  return body;
}

// What the arguments of `route` say of its request. Each parameter of the path is described, and
// only those: an argument for a place the path does not have cannot be given.
struct RequestParts {
  Json parameters = Json::array();
  Json body;
};

RequestParts RequestOf(const Described& route) {
  RequestParts request;
  std::set<std::string_view> described;
  for (size_t i = 0; i < route.endpoint.argumentCount; ++i) {
    const KestArgument& argument = *KestArgumentAt(&route.api, &route.endpoint, i);
    const std::string_view place = PlaceOf(route, argument);
    if (place == "body") {
      request.body = BodyOf(route, argument);
    } else if (place != "path") {
      request.parameters.push_back(ParameterOf(route, argument, place));
    } else if (route.FindPathParameter(ToView(argument.name)) != nullptr) {
      described.insert(ToView(argument.name));
      request.parameters.push_back(ParameterOf(route, argument, place));
    }
  }
  for (const PathParameter& parameter : route.pathParameters) {
    if (!described.insert(parameter.name).second) continue;
    request.parameters.push_back({{"name", RepairUtf8(parameter.name)},
                                  {"in", "path"},
                                  {"required", true},
                                  {"schema", {{"type", "string"}}}});
  }
  return request;
}

Json ResponsesOf(const Described& route) {
  Json responses;
  if (route.endpoint.result.name.size > 0) {
    responses["200"] = {{"description", "The result"},
                        {"content", Contents(kResultTypes, route.Schema(route.endpoint.result))}};
  } else {
    responses["204"] = {{"description", "Done; there is no result"}};
  }
  if (responses.contains("200") && MethodName(route.endpoint.methodId) == "GET") {
    responses["304"] = {{"$ref", "#/components/responses/NotModified"}};
  }
  responses["default"] = {{"$ref", "#/components/responses/Problem"}};
  return responses;
}

Json OperationOf(const Described& route, std::string_view tag) {
  Json operation = {{"operationId", Words(route.endpoint.functionName)},
                    {"tags", Json::array({tag})}};
  if (route.endpoint.description.size > 0) {
    operation["summary"] = Words(route.endpoint.description);
  }
  RequestParts request = RequestOf(route);
  if (!request.parameters.empty()) {
    operation["parameters"] = std::move(request.parameters);
  }
  if (!request.body.empty()) operation["requestBody"] = std::move(request.body);
  operation["responses"] = ResponsesOf(route);
  return operation;
}

}  // namespace

Json PluginPaths(const KestApiDescriptor& api, const ApiHelp& help, std::string_view tag) {
  Json paths = Json::object();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
    const std::string method = OperationName(MethodName(endpoint.methodId));
    if (method.empty()) continue;
    const Described route{api, endpoint, help, PathParameters(ToView(endpoint.pathTemplate))};
    if (route.FindPathParameter("") != nullptr) continue;
    Json& path = paths[DocumentPath(Words(endpoint.pathTemplate))];
    if (!path.contains(method)) path[method] = OperationOf(route, tag);
  }
  return paths;
}

}  // namespace Kest::Host
