#include "host/openapi/operations.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/utf8.h"
#include "host/library/c_views.h"
#include "host/openapi/route_path.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {
namespace {

using Object = JsonValue::Object;

// By method id.
constexpr std::string_view kMethods[] = {"",        "delete", "get",  "head",
                                         "options", "patch",  "post", "put"};
constexpr std::string_view kBodyTypes[] = {"application/json", "application/vnd.api+json",
                                           "application/x-yaml", "application/x-msgpack"};
constexpr std::string_view kAnswerTypes[] = {"application/json", "application/x-msgpack"};

std::string Words(KestText text) {
  return RepairUtf8(View(text));
}

// An endpoint and what is known around it.
struct Described {
  const KestEndpoint& endpoint;
  const ApiHelp& help;
  std::vector<PathParameter> pathParameters;

  const PathParameter* FindPathParameter(std::string_view name) const {
    const auto found = std::find_if(pathParameters.begin(), pathParameters.end(),
                                    [name](const auto& known) { return known.name == name; });
    return found == pathParameters.end() ? nullptr : &*found;
  }
  Object Schema(const KestTypeName& type) const {
    return ValueSchema(help, View(type.name), View(type.element));
  }
};

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
      return route.FindPathParameter(View(argument.name)) != nullptr ? "path" : "query";
  }
}

Object ParameterOf(const Described& route, const KestArgument& argument, std::string_view place) {
  std::string description = Words(argument.description);
  const PathParameter* const inPath = route.FindPathParameter(View(argument.name));
  if (inPath != nullptr && inPath->isRest) {
    description += (description.empty() ? "" : ". ") + std::string("May hold slashes.");
  }
  // A bool that is not given is false.
  const bool required =
      place == "path" || !(argument.optional || View(argument.type.name) == "bool");
  Object parameter = {{"name", Words(argument.name)}, {"in", place}, {"required", required}};
  if (!description.empty()) parameter.push_back({"description", std::move(description)});
  Object schema = route.Schema(argument.type);
  // Outside a body such a value is written as JSON text.
  if (IsComposite(route.help, View(argument.type.name))) {
    parameter.push_back(
        {"content", Object{{"application/json", Object{{"schema", std::move(schema)}}}}});
  } else {
    parameter.push_back({"schema", std::move(schema)});
  }
  return parameter;
}

Object BodyOf(const Described& route, const KestArgument& argument) {
  Object body = {{"required", !argument.optional},
                 {"content", Contents(kBodyTypes, route.Schema(argument.type))}};
  if (argument.description.size > 0) {
    body.push_back({"description", Words(argument.description)});
  }
  return body;
}

// What the arguments of `route` say of its request. Each parameter of the path is described, and
// only those: an argument for a place the path does not have cannot be given.
struct RequestParts {
  JsonValue::Array parameters;
  Object body;
};

RequestParts RequestOf(const Described& route) {
  RequestParts request;
  std::set<std::string_view> described;
  for (size_t i = 0; i < route.endpoint.argumentCount; ++i) {
    const KestArgument& argument = route.endpoint.arguments[i];
    const std::string_view place = PlaceOf(route, argument);
    if (place == "body") {
      request.body = BodyOf(route, argument);
    } else if (place != "path") {
      request.parameters.push_back(ParameterOf(route, argument, place));
    } else if (route.FindPathParameter(View(argument.name)) != nullptr) {
      described.insert(View(argument.name));
      request.parameters.push_back(ParameterOf(route, argument, place));
    }
  }
  for (const PathParameter& parameter : route.pathParameters) {
    if (!described.insert(parameter.name).second) continue;
    request.parameters.push_back(Object{{"name", RepairUtf8(parameter.name)},
                                        {"in", "path"},
                                        {"required", true},
                                        {"schema", Object{{"type", "string"}}}});
  }
  return request;
}

Object ResponsesOf(const Described& route) {
  Object responses;
  if (route.endpoint.result.name.size > 0) {
    responses.push_back(
        {"200", Object{{"description", "The result"},
                       {"content", Contents(kAnswerTypes, route.Schema(route.endpoint.result))}}});
  } else {
    responses.push_back({"204", Object{{"description", "Done; there is no result"}}});
  }
  responses.push_back({"default", Object{{"$ref", "#/components/responses/Problem"}}});
  return responses;
}

Object OperationOf(const Described& route, std::string_view tag) {
  Object operation = {{"operationId", Words(route.endpoint.functionName)},
                      {"tags", JsonValue::Array{tag}}};
  if (route.endpoint.description.size > 0) {
    operation.push_back({"summary", Words(route.endpoint.description)});
  }
  RequestParts request = RequestOf(route);
  if (!request.parameters.empty()) {
    operation.push_back({"parameters", std::move(request.parameters)});
  }
  if (!request.body.empty()) operation.push_back({"requestBody", std::move(request.body)});
  operation.push_back({"responses", ResponsesOf(route)});
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

JsonValue::Object PluginPaths(const KestApiDescriptor& api, const ApiHelp& help,
                              std::string_view tag) {
  Object paths;
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = api.endpoints[i];
    const auto method = static_cast<size_t>(endpoint.methodId);
    if (method == 0 || method >= std::size(kMethods)) continue;
    const Described route{endpoint, help, PathParameters(View(endpoint.pathTemplate))};
    if (route.FindPathParameter("") != nullptr) continue;
    JsonValue& path = MemberOf(paths, DocumentPath(Words(endpoint.pathTemplate)));
    if (path.Find(kMethods[method]) != nullptr) continue;
    path.AsObject()->push_back({std::string(kMethods[method]), OperationOf(route, tag)});
  }
  return paths;
}

}  // namespace Kest::Host
