// Schemas of the events a plugin sends and knows.
#pragma once

#include "host/json/json.h"
#include "host/openapi/api_help.h"
#include "host/openapi/type_schemas.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

// What the event stream reports of the plugin's resources: for each resource that can be read,
// named after the function that reads it, "GetEnabledChangeEvent" with data,
// "GetEnabledDeletionEvent" without, and "GetEnabledEvent", either; and last "ResourceEvent", any
// of them all.
NamedSchemas ResourceEventSchemas(const KestApiDescriptor& api, const ApiHelp& help);

// By name, the events the plugin's API names, with their descriptions and payload schemas.
Json NamedEvents(const ApiHelp& help);

}  // namespace Kest::Host
