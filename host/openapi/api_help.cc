#include "host/openapi/api_help.h"

#include <algorithm>

#include "host/json/json.h"

namespace Kest::Host {
namespace {

// What follows throws when a member is missing or of another kind.

TypeHelpName ReadTypeName(const Json& type) {
  return {type.value("type", ""), type.value("elementType", "")};
}

FieldHelp ReadField(const Json& field) {
  return {.name = field.at("name"),
          .description = field.value("description", ""),
          .type = ReadTypeName(field.at("type")),
          .optional = field.value("optional", true)};
}

TypeHelp ReadType(const Json& type) {
  TypeHelp help = {.name = type.at("name"),
                   .nameSpace = type.value("nameSpace", ""),
                   .description = type.value("description", ""),
                   .fields = {},
                   .enumerators = {}};
  for (const Json& field : type.value("fields", Json::array())) {
    help.fields.push_back(ReadField(field));
  }
  for (const Json& enumerator : type.value("values", Json::array())) {
    help.enumerators.push_back(enumerator.at("name"));
  }
  return help;
}

EventHelp ReadEvent(const Json& event) {
  return {.name = event.at("name"),
          .description = event.value("description", ""),
          .type = ReadTypeName(event.at("type"))};
}

}  // namespace

const TypeHelp* ApiHelp::FindType(std::string_view name) const {
  const auto found = std::find_if(types.begin(), types.end(),
                                  [name](const TypeHelp& type) { return type.name == name; });
  return found == types.end() ? nullptr : &*found;
}

Maybe<ApiHelp> ReadApiHelp(std::string_view json) {
  const Json document = ParseJson(json);
  if (document.is_discarded()) return Failure{"help is not JSON"};
  ApiHelp help;
  std::string place = "help";
  const auto readList = [&](const std::string& name, auto* items, auto read) {
    for (const Json& item : document.value(name, Json::array())) {
      place = "help." + name + "." + std::to_string(items->size());
      items->push_back(read(item));
    }
  };
  try {
    readList("types", &help.types, ReadType);
    readList("events", &help.events, ReadEvent);
  } catch (const Json::exception& fault) {
    const std::string_view text = fault.what();  // "[kind] what"
    return Failure{place + ": " + std::string(text.substr(text.find(']') + 2))};
  }
  return help;
}

}  // namespace Kest::Host
