// What the plugin's function "$builtin.Help" reports about its registered types and events, as far
// as an API document needs it. Reading is strict in the members it knows and passes over others.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"

namespace Kest::Host {

// As KestTypeName: a type's name, and its elements' when it is "vector" or "map". Empty: no value.
struct TypeHelpName {
  std::string name;
  std::string element;
};

struct FieldHelp {
  std::string name;
  std::string description;
  TypeHelpName type;
  bool optional = true;  // may be left out of a request; responses have every field
};

struct TypeHelp {
  std::string name;
  std::string nameSpace;
  std::string description;
  std::vector<FieldHelp> fields;
  std::vector<std::string> enumerators;  // names; none for a structure

  bool IsEnumeration() const { return !enumerators.empty(); }
};

struct EventHelp {
  std::string name;
  std::string description;
  TypeHelpName type;
};

struct ApiHelp {
  std::vector<TypeHelp> types;  // in order of registration, as the events
  std::vector<EventHelp> events;

  // Null when no type has that name.
  const TypeHelp* FindType(std::string_view name) const;
};

// Reads the "Full" form. A failure names the type or event at fault: "help.types.3: key 'name' not
// found".
Maybe<ApiHelp> ReadApiHelp(std::string_view json);

}  // namespace Kest::Host
