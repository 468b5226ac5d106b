// Which control a request asks for.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/openapi/control_description.h"

namespace Kest::Host {

// By name: what stands in the path where its template has "{name}", decoded.
using PathArguments = std::map<std::string, std::string, std::less<>>;

struct FoundControl {
  const ControlDescription* control = nullptr;  // null: there is none of that method and path
  PathArguments arguments;
  std::string methods;  // "GET, PUT": of all controls at the path, unless one was found
};

// The control at the path below "/_host" whose decoded parts are `parts`, none for the index, among
// those that `isServed` accepts by their operation id. A literal path goes before a template. None
// has an empty part: an id that was left out names nothing, and not the control above it.
FoundControl FindControl(std::string_view method, const std::vector<std::string>& parts,
                         const std::function<bool(std::string_view operationId)>& isServed);

}  // namespace Kest::Host
