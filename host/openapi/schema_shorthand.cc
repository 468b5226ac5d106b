#include "host/openapi/schema_shorthand.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace Kest::Host {
namespace {

constexpr std::string_view kTypes[] = {"string", "boolean", "integer", "number", "object", "null"};

// "a|b|c" as an array.
Json Alternatives(std::string_view text) {
  Json list = Json::array();
  while (true) {
    const size_t bar = text.find('|');
    list.push_back(text.substr(0, bar));
    if (bar == std::string_view::npos) return list;
    text.remove_prefix(bar + 1);
  }
}

Json NamedSchema(std::string_view name) {
  if (name == "any") return Json::object();
  if (name.find('|') != std::string_view::npos) return {{"type", Alternatives(name)}};
  if (name == "int32") return {{"type", "integer"}, {"format", name}};
  if (std::find(std::begin(kTypes), std::end(kTypes), name) != std::end(kTypes)) {
    return {{"type", name}};
  }
  return {{"$ref", "#/components/schemas/" + std::string(name)}};
}

Json StringSchema(std::string_view text) {
  if (text.starts_with('=')) {
    Json choices = Alternatives(text.substr(1));
    if (choices.size() == 1) return {{"type", "string"}, {"const", std::move(choices[0])}};
    return {{"type", "string"}, {"enum", std::move(choices)}};
  }
  const size_t space = text.find(' ');
  Json schema = NamedSchema(text.substr(0, space));
  if (space == std::string_view::npos) return schema;
  const std::string_view range = text.substr(space + 1);
  const size_t dots = range.find("..");
  schema["minimum"] = ParseJson(range.substr(0, dots));
  if (dots + 2 < range.size()) schema["maximum"] = ParseJson(range.substr(dots + 2));
  return schema;
}

Json StructureSchema(const Json& members) {
  Json properties = Json::object();
  Json required = Json::array();
  for (const auto& [name, shorthand] : members.items()) {
    if (name.ends_with('?')) {
      properties[name.substr(0, name.size() - 1)] = ExpandSchema(shorthand);
    } else {
      properties[name] = ExpandSchema(shorthand);
      required.push_back(name);
    }
  }
  Json schema = {{"type", "object"}, {"properties", std::move(properties)}};
  if (!required.empty()) schema["required"] = std::move(required);
  return schema;
}

Json ExtendedSchema(const Json& members) {
  Json schema;
  for (const auto& [name, value] : members.items()) {
    if (name == "$") {
      schema = ExpandSchema(value);
    } else if (name == "oneOf") {
      for (const Json& choice : value) schema[name].push_back(ExpandSchema(choice));
    } else {
      schema[name] = value;
    }
  }
  return schema;
}

}  // namespace

Json ExpandSchema(const Json& shorthand) {
  if (shorthand.is_string()) return StringSchema(shorthand.get_ref<const std::string&>());
  if (shorthand.is_array()) return {{"type", "array"}, {"items", ExpandSchema(shorthand[0])}};
  if (shorthand.contains("$")) return ExtendedSchema(shorthand);
  if (shorthand.contains("*")) {
    return {{"type", "object"}, {"additionalProperties", ExpandSchema(shorthand["*"])}};
  }
  return StructureSchema(shorthand);
}

}  // namespace Kest::Host
