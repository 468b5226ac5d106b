// JSON schemas of the plugin's values: the form in which the plugin returns them.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/json/json.h"
#include "host/openapi/api_help.h"

namespace Kest::Host {

// Schemas in order. A name may be repeated: names of the plugin become alike as SchemaName.
using NamedSchemas = std::vector<std::pair<std::string, Json>>;

// The schema of a value of that type; a type of `help` is referred to, and so are the 64-bit
// numbers, which are too wide for the numbers of JavaScript. What `help` does not describe may be
// anything. `element`: of "vector" and "map".
Json ValueSchema(const ApiHelp& help, std::string_view type, std::string_view element);

// Whether that type is a list, a map, a free value or a structure: of several parts.
bool IsComposite(const ApiHelp& help, std::string_view type);

// The name of a schema: letters, digits and "._-" stay, "_" stands for all else.
std::string SchemaName(std::string_view name);

// The named schemas: the 64-bit numbers, then every type of `help`.
NamedSchemas TypeSchemas(const ApiHelp& help);

}  // namespace Kest::Host
