// JSON schemas of the plugin's values: the form in which the plugin answers them.
#pragma once

#include <string_view>

#include "host/openapi/api_help.h"
#include "host/world/json_value.h"

namespace Kest::Host {

// The schema of a value of that type; a registered type is referred to, and so are the 64-bit
// numbers, which are too wide for the numbers of JavaScript. `element`: of "vector" and "map".
JsonValue::Object ValueSchema(std::string_view type, std::string_view element);

// The named schemas: the 64-bit numbers, then every type of `help`.
JsonValue::Object TypeSchemas(const ApiHelp& help);

}  // namespace Kest::Host
