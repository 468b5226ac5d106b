#include "host/openapi/schema_fault.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "host/json/json_text.h"
#include "host/openapi/control_description.h"
#include "host/openapi/schema_shorthand.h"

namespace Kest::Host {
namespace {

// A schema that is named; an empty one, which everything fits, for a name of no control's schema.
Json NamedSchema(const std::string& reference) {
  const std::string name = reference.substr(reference.rfind('/') + 1);
  if (name == "int64") return {{"type", "integer"}};
  if (name == "uint64") return {{"type", "integer"}, {"minimum", 0}};
  static const Json schemas = ParseJson(kControlsText)["schemas"];
  return schemas.contains(name) ? ExpandSchema(schemas[name]) : Json::object();
}

bool IsOfType(const Json& value, std::string_view type) {
  if (type == "string") return value.is_string();
  if (type == "boolean") return value.is_boolean();
  if (type == "integer") return value.is_number_integer();
  if (type == "number") return value.is_number();
  if (type == "object") return value.is_object();
  if (type == "array") return value.is_array();
  return value.is_null();
}

// A schema without a type fits all.
bool HasTypeOf(const Json& value, const Json& schema) {
  const auto type = schema.find("type");
  if (type == schema.end()) return true;
  const Json types = type->is_array() ? *type : Json::array({*type});
  return std::any_of(types.begin(), types.end(), [&value](const Json& name) {
    return IsOfType(value, name.get_ref<const std::string&>());
  });
}

// Of a "oneOf" the schema that has the value's type. Where several have, an empty one; where none
// has, one of their types.
Json ChooseSchema(const Json& value, const Json& choices) {
  std::vector<Json> fitting;
  Json types = Json::array();
  for (const Json& choice : choices) {
    Json schema = choice.contains("$ref") ? NamedSchema(choice["$ref"]) : choice;
    const Json type = schema.value("type", Json::array());
    if (type.is_array()) types.insert(types.end(), type.begin(), type.end());
    if (type.is_string()) types.push_back(type);
    if (HasTypeOf(value, schema)) fitting.push_back(std::move(schema));
  }
  if (fitting.empty()) return {{"type", std::move(types)}};
  return fitting.size() == 1 ? std::move(fitting.front()) : Json::object();
}

// "a, b" of a list, or the one value.
std::string Listed(const Json& choices) {
  if (!choices.is_array()) return WriteJson(choices);
  std::string list;
  for (const Json& choice : choices)
    list.append(list.empty() ? "" : ", ").append(WriteJson(choice));
  return list;
}

bool IsAmong(const Json& choices, const Json& value) {
  return choices.is_array() ? std::find(choices.begin(), choices.end(), value) != choices.end()
                            : choices == value;
}

// What is wrong with the value itself, not with its parts; empty when it fits.
std::string FaultOf(const Json& value, const Json& schema) {
  if (!HasTypeOf(value, schema)) return "must be of the type " + Listed(schema["type"]);
  for (const char* const name : {"const", "enum"}) {
    const auto choices = schema.find(name);
    if (choices != schema.end() && !IsAmong(*choices, value)) {
      return (choices->is_array() ? "must be one of " : "must be ") + Listed(*choices);
    }
  }
  if (schema.contains("minimum") && value < schema["minimum"]) {
    return "must be at least " + WriteJson(schema["minimum"]);
  }
  if (schema.contains("maximum") && value > schema["maximum"]) {
    return "must be at most " + WriteJson(schema["maximum"]);
  }
  for (const Json& name : schema.value("required", Json::array())) {
    if (!value.contains(name.get_ref<const std::string&>())) {
      return "member " + WriteJson(name) + " is missing";
    }
  }
  return {};
}

using Pending = std::vector<std::pair<const Json*, Json>>;  // values and their schemas

// Adds the parts of an object or array; returns a member that its schema does not know.
std::optional<SchemaFault> AddParts(const Json& value, const Json& schema, Pending* pending) {
  if (value.is_array() && schema.contains("items")) {
    for (const Json& item : value) pending->emplace_back(&item, schema["items"]);
  }
  if (!value.is_object()) return std::nullopt;
  const Json properties = schema.value("properties", Json::object());
  for (const auto& [name, member] : value.items()) {
    if (properties.contains(name)) {
      pending->emplace_back(&member, properties[name]);
    } else if (schema.contains("additionalProperties")) {
      pending->emplace_back(&member, schema["additionalProperties"]);
    } else if (schema.contains("properties")) {
      return SchemaFault{&member, "unknown member " + JsonString(name)};
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<SchemaFault> FindSchemaFault(const Json& value, const Json& shorthand) {
  Pending pending = {{&value, ExpandSchema(shorthand)}};
  while (!pending.empty()) {
    auto [part, schema] = std::move(pending.back());
    pending.pop_back();
    if (schema.contains("$ref")) schema = NamedSchema(schema["$ref"]);
    if (schema.contains("oneOf")) schema = ChooseSchema(*part, schema["oneOf"]);
    if (std::string fault = FaultOf(*part, schema); !fault.empty()) {
      return SchemaFault{part, std::move(fault)};
    }
    if (auto fault = AddParts(*part, schema, &pending)) return fault;
  }
  return std::nullopt;
}

}  // namespace Kest::Host
