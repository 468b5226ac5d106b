#include "host/openapi/type_schemas.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace Kest::Host {
namespace {

struct IntegerRange {
  std::string_view name;
  Json lowest;
  Json highest;
};

template <typename T>
IntegerRange RangeOf(std::string_view name) {
  return {name, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

// Narrow ones are written where they are used, the 64-bit ones among the named schemas.
const std::vector<IntegerRange>& NarrowIntegers() {
  static const std::vector<IntegerRange> ranges = {
      RangeOf<int8_t>("int8"),   RangeOf<int16_t>("int16"),   RangeOf<int32_t>("int32"),
      RangeOf<uint8_t>("uint8"), RangeOf<uint16_t>("uint16"), RangeOf<uint32_t>("uint32")};
  return ranges;
}

Json IntegerSchema(const IntegerRange& range) {
  return {{"type", "integer"},
          {"format", range.name},
          {"minimum", range.lowest},
          {"maximum", range.highest}};
}

Json WideIntegerSchema(const IntegerRange& range) {
  Json schema = IntegerSchema(range);
  schema["description"] =
      "A 64-bit number. JavaScript's numbers hold it exactly up to 9007199254740991 (2^53 - 1) "
      "either way; beyond, read the text with a parser that keeps all digits.";
  return schema;
}

// Puts `text` before what the schema says already.
void Describe(std::string_view text, Json* schema) {
  if (text.empty()) return;
  Json& description = (*schema)["description"];
  description = description.is_null()
                    ? std::string(text)
                    : std::string(text) + ". " + description.get_ref<const std::string&>();
}

Json Reference(std::string_view type) {
  return {{"$ref", "#/components/schemas/" + SchemaName(type)}};
}

Json SimpleSchema(const ApiHelp& help, std::string_view type) {
  for (const IntegerRange& range : NarrowIntegers()) {
    if (range.name == type) return IntegerSchema(range);
  }
  if (type == "bool") return {{"type", "boolean"}};
  if (type == "float" || type == "double") return {{"type", "number"}, {"format", type}};
  if (type == "string") return {{"type", "string"}};
  if (type == "blob") {
    return {{"type", "string"}, {"description", "Bytes; in JSON a text made of them."}};
  }
  // The elements of elements are not described.
  if (type == "vector") return {{"type", "array"}, {"items", Json::object()}};
  if (type == "map") return {{"type", "object"}};
  if (type == "int64" || type == "uint64" || help.FindType(type) != nullptr) return Reference(type);
  return Json::object();  // any value
}

Json EnumerationSchema(const TypeHelp& type) {
  return {{"type", "string"}, {"enum", type.enumerators}};
}

Json StructureSchema(const ApiHelp& help, const TypeHelp& type) {
  Json properties = Json::object();
  Json names = Json::array();
  for (const FieldHelp& field : type.fields) {
    Json schema = ValueSchema(help, field.type.name, field.type.element);
    Describe(field.description, &schema);
    properties[field.name] = std::move(schema);
    names.push_back(field.name);
  }
  Json schema = {{"type", "object"}, {"properties", std::move(properties)}};
  if (!names.empty()) schema["required"] = std::move(names);
  return schema;
}

// Responses hold every field; requests may leave the optional ones out.
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

Json ValueSchema(const ApiHelp& help, std::string_view type, std::string_view element) {
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

NamedSchemas TypeSchemas(const ApiHelp& help) {
  NamedSchemas schemas = {{"int64", WideIntegerSchema(RangeOf<int64_t>("int64"))},
                          {"uint64", WideIntegerSchema(RangeOf<uint64_t>("uint64"))}};
  for (const TypeHelp& type : help.types) {
    Json schema = type.IsEnumeration() ? EnumerationSchema(type) : StructureSchema(help, type);
    Describe(DescriptionOf(type), &schema);
    if (!type.nameSpace.empty()) schema["x-nameSpace"] = type.nameSpace;
    schemas.emplace_back(SchemaName(type.name), std::move(schema));
  }
  return schemas;
}

}  // namespace Kest::Host
