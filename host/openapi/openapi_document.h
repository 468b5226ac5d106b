// The API of the plugin and of the development host around it as one OpenAPI 3.1 document.
//
// The plugin's part is made from what any host knows of it: the descriptor (endpoints, arguments,
// results) and the Help document (types, events); the host's part from the tables of its controls.
// The same plugin gives the same document.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

struct DescribedPlugin {
  std::string_view name;
  std::string_view version;
  const KestApiDescriptor* api;
  std::string_view help;  // the "Full" form, JSON
};

// Fails when the help document cannot be read, and when a type has the name of another schema.
Maybe<std::string> MakeOpenApiDocument(const DescribedPlugin& plugin);

}  // namespace Kest::Host
