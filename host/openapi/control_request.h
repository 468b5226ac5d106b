// What every control refuses in a request, by its description: what it would otherwise ignore.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/openapi/control_lookup.h"
#include "host/url/request_target.h"

namespace Kest::Host {

// A query parameter that the control does not know, that is empty, or that comes twice; a broken
// escape. [any thread]
std::optional<std::string> QueryFault(const FoundControl& found, const RequestTarget& target);

// A body for a control that takes none; an object without members is none. [any thread]
std::optional<std::string> BodyFault(const ControlDescription& control, std::string_view body);

}  // namespace Kest::Host
