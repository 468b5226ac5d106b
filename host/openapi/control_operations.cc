#include "host/openapi/control_operations.h"

#include <string>
#include <utility>

#include "host/openapi/control_description.h"
#include "host/openapi/route_path.h"
#include "host/openapi/schema_shorthand.h"

namespace Kest::Host {
namespace {

Json Parameter(const std::string& name, std::string_view place, bool required, Json schema) {
  Json parameter = {{"name", name}, {"in", place}, {"required", required}};
  if (schema.contains("description")) {
    parameter["description"] = schema["description"];
    schema.erase("description");
  }
  parameter["schema"] = std::move(schema);
  return parameter;
}

Json ParametersOf(const ControlDescription& control) {
  Json described = control.parameters;
  Json parameters = Json::array();
  for (const PathParameter& inPath : PathParameters(control.path)) {
    Json schema = ExpandSchema(described.value(inPath.name, Json("string")));
    described.erase(inPath.name);
    parameters.push_back(Parameter(inPath.name, "path", true, std::move(schema)));
  }
  for (const auto& [key, shorthand] : described.items()) {
    const bool isHeader = key.starts_with(kHeaderMark);
    const std::string name = isHeader ? key.substr(kHeaderMark.size()) : key;
    parameters.push_back(
        Parameter(name, isHeader ? "header" : "query", false, ExpandSchema(shorthand)));
  }
  return parameters;
}

Json JsonContent(Json schema) {
  return {{"application/json", {{"schema", std::move(schema)}}}};
}

Json ContentByType(const Json& shorthands) {
  Json content = Json::object();
  for (const auto& [type, schema] : shorthands.items()) {
    content[type] = {{"schema", ExpandSchema(schema)}};
  }
  return content;
}

Json BodyOf(const ControlDescription& control) {
  if (control.TakesText()) return {{"required", true}, {"content", ContentByType(control.body)}};
  Json schema = ExpandSchema(control.body);
  const bool required = control.TakesAnyBody() || schema.contains("required");
  return {{"required", required}, {"content", JsonContent(std::move(schema))}};
}

Json ResponseContent(const Json& shorthand) {
  const bool byType =
      shorthand.is_object() && shorthand.begin().key().find('/') != std::string::npos;
  return byType ? ContentByType(shorthand) : JsonContent(ExpandSchema(shorthand));
}

Json OperationOf(const ControlDescription& control) {
  Json operation = {{"operationId", control.operationId},
                    {"tags", Json::array({kControlTag})},
                    {"summary", control.summary}};
  if (Json parameters = ParametersOf(control); !parameters.empty()) {
    operation["parameters"] = std::move(parameters);
  }
  if (!control.body.empty()) operation["requestBody"] = BodyOf(control);
  Json result = {{"description", "The result"}, {"content", ResponseContent(control.response)}};
  operation["responses"] = {{"200", std::move(result)},
                            {"default", {{"$ref", "#/components/responses/Problem"}}}};
  return operation;
}

}  // namespace

Json ControlPaths() {
  Json paths = Json::object();
  for (const ControlDescription& control : AllControls()) {
    paths[control.path][OperationName(control.method)] = OperationOf(control);
  }
  return paths;
}

NamedSchemas ControlSchemas() {
  NamedSchemas schemas;
  const Json document = ParseJson(kControlsText);
  for (const auto& [name, shorthand] : document["schemas"].items()) {
    schemas.emplace_back(name, ExpandSchema(shorthand));
  }
  return schemas;
}

}  // namespace Kest::Host
