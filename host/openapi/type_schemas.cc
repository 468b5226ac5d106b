#include "host/openapi/type_schemas.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace Kest::Host {
namespace {

using Schema = JsonValue::Object;

struct IntegerRange {
  std::string_view name;
  JsonValue lowest;
  JsonValue highest;
};

template <typename T>
IntegerRange RangeOf(std::string_view name) {
  return {name, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

// The narrower ones stand where they are used, the 64-bit ones among the named schemas.
const std::vector<IntegerRange>& NarrowIntegers() {
  static const std::vector<IntegerRange> ranges = {
      RangeOf<int8_t>("int8"),   RangeOf<int16_t>("int16"),   RangeOf<int32_t>("int32"),
      RangeOf<uint8_t>("uint8"), RangeOf<uint16_t>("uint16"), RangeOf<uint32_t>("uint32")};
  return ranges;
}

Schema IntegerSchema(const IntegerRange& range) {
  return {{"type", "integer"},
          {"format", range.name},
          {"minimum", range.lowest},
          {"maximum", range.highest}};
}

Schema WideIntegerSchema(const IntegerRange& range) {
  Schema schema = IntegerSchema(range);
  schema.push_back({"description",
                    "A 64-bit number. JavaScript's numbers hold it exactly up to 9007199254740991 "
                    "(2^53 - 1) either way; beyond, read the text with a parser that keeps all "
                    "digits."});
  return schema;
}

// Puts `text` before what the schema says already.
void Describe(std::string_view text, Schema* schema) {
  if (text.empty()) return;
  for (JsonValue::Member& member : *schema) {
    if (member.name != "description") continue;
    member.value = std::string(text) + ". " + *member.value.AsText();
    return;
  }
  schema->push_back({"description", text});
}

Schema Reference(std::string_view type) {
  return {{"$ref", "#/components/schemas/" + SchemaName(type)}};
}

Schema SimpleSchema(const ApiHelp& help, std::string_view type) {
  for (const IntegerRange& range : NarrowIntegers()) {
    if (range.name == type) return IntegerSchema(range);
  }
  if (type == "bool") return {{"type", "boolean"}};
  if (type == "float" || type == "double") return {{"type", "number"}, {"format", type}};
  if (type == "string") return {{"type", "string"}};
  if (type == "blob") {
    return {{"type", "string"}, {"description", "Bytes; in JSON a text made of them."}};
  }
  // Of elements that are lists or maps themselves, theirs are not told.
  if (type == "vector") return {{"type", "array"}, {"items", Schema()}};
  if (type == "map") return {{"type", "object"}};
  if (type == "int64" || type == "uint64" || help.FindType(type) != nullptr) return Reference(type);
  return {};  // any value
}

Schema EnumerationSchema(const TypeHelp& type) {
  JsonValue::Array names;
  for (const std::string& name : type.enumerators) names.push_back(name);
  return {{"type", "string"}, {"enum", std::move(names)}};
}

Schema StructureSchema(const ApiHelp& help, const TypeHelp& type) {
  Schema properties;
  JsonValue::Array names;
  for (const FieldHelp& field : type.fields) {
    Schema schema = ValueSchema(help, field.type.name, field.type.element);
    Describe(field.description, &schema);
    properties.push_back({field.name, std::move(schema)});
    names.push_back(field.name);
  }
  Schema schema = {{"type", "object"}, {"properties", std::move(properties)}};
  if (!names.empty()) schema.push_back({"required", std::move(names)});
  return schema;
}

// Answers hold every field; what is sent may leave the optional ones out.
std::string DescriptionOf(const TypeHelp& type) {
  std::string needed;
  for (const FieldHelp& field : type.fields) {
    if (!field.optional) needed += (needed.empty() ? "" : ", ") + field.name;
  }
  if (needed.empty()) return type.description;
  const std::string note = "When it is sent, these members must be there: " + needed + ".";
  return type.description.empty() ? note : type.description + " " + note;
}

}  // namespace

JsonValue::Object ValueSchema(const ApiHelp& help, std::string_view type,
                              std::string_view element) {
  if (type == "vector") return {{"type", "array"}, {"items", SimpleSchema(help, element)}};
  if (type == "map") {
    return {{"type", "object"}, {"additionalProperties", SimpleSchema(help, element)}};
  }
  return SimpleSchema(help, type);
}

bool IsComposite(const ApiHelp& help, std::string_view type) {
  if (type == "vector" || type == "map" || type == "object") return true;
  const TypeHelp* const registered = help.FindType(type);
  return registered != nullptr && !registered->IsEnumeration();
}

std::string SchemaName(std::string_view name) {
  constexpr std::string_view kKept =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  std::string kept(name);
  for (char& c : kept) {
    if (kKept.find(c) == std::string_view::npos) c = '_';
  }
  return kept;
}

JsonValue::Object TypeSchemas(const ApiHelp& help) {
  Schema schemas = {{"int64", WideIntegerSchema(RangeOf<int64_t>("int64"))},
                    {"uint64", WideIntegerSchema(RangeOf<uint64_t>("uint64"))}};
  for (const TypeHelp& type : help.types) {
    Schema schema = type.IsEnumeration() ? EnumerationSchema(type) : StructureSchema(help, type);
    Describe(DescriptionOf(type), &schema);
    if (!type.nameSpace.empty()) schema.push_back({"x-nameSpace", type.nameSpace});
    schemas.push_back({SchemaName(type.name), std::move(schema)});
  }
  return schemas;
}

}  // namespace Kest::Host
