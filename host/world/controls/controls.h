// The world's controls below "/_host": a person or a test plays the platform's other side. Wrong
// input gets 400 with a message that says what is wrong, 404 for an unknown control, thing or name,
// 405 for a method a control does not have; it changes nothing. docs/development-host.md lists
// them.
#pragma once

#include <string_view>

#include "host/world/controls/platform.h"

namespace Kest::Host {

// `path` is below "/_host": "/login".
WorldResponse CallControl(Platform& platform, std::string_view method, std::string_view path,
                          std::string_view body);

}  // namespace Kest::Host
