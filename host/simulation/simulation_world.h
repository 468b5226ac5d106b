// The world of the simulation: small, with something of every kind.
#pragma once

#include <string_view>

namespace Kest::Host {

extern const std::string_view kSimulationWorldText;

}  // namespace Kest::Host
