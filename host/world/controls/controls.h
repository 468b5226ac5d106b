// The control endpoints below "/_host": a person or a test plays the platform's other side. Wrong
// input answers 400 with a text that says what is wrong, 404 for an unknown control, thing or name,
// 405 for a method a control does not have; it changes nothing. docs/worlds.md describes each.
#pragma once

#include <string_view>

#include "host/world/controls/platform.h"

namespace Kest::Host {

WorldResponse AnswerControl(Platform& platform, std::string_view method, std::string_view path,
                            std::string_view body);

}  // namespace Kest::Host
