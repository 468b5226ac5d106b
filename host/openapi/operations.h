// The endpoints of the plugin's descriptor as operations of an API document.
#pragma once

#include <string_view>

#include "host/json/json.h"
#include "host/openapi/api_help.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

// One operation for each endpoint, in order, gathered by path and marked with `tag`. Of two
// endpoints with the same method and path the first handles all requests, so only that one is
// listed. A template with a parameter that has no name cannot be described; the plugin refuses all
// its requests.
Json PluginPaths(const KestApiDescriptor& api, const ApiHelp& help, std::string_view tag);

}  // namespace Kest::Host
