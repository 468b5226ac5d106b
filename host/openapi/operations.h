// The endpoints of the plugin's descriptor as operations of an API document.
#pragma once

#include <string_view>

#include "host/world/json_value.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

// One operation for each endpoint, in order, gathered by path and marked with `tag`. Of two
// endpoints with the same method and path the first answers, so only that one is listed.
JsonValue::Object PluginPaths(const KestApiDescriptor& api, std::string_view tag);

}  // namespace Kest::Host
