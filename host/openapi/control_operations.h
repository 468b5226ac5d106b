// The development host's own part of the API document: its controls as operations, and the schemas
// that their descriptions name.
#pragma once

#include <string_view>

#include "host/json/json.h"
#include "host/openapi/type_schemas.h"

namespace Kest::Host {

constexpr std::string_view kControlTag = "development host";

// By path and method, each marked with kControlTag.
Json ControlPaths();

// By name: what controls return, events, and the problem document.
NamedSchemas ControlSchemas();

}  // namespace Kest::Host
