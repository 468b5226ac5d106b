// The development host's own part of the API document: development_host.json as the build embeds
// it.
#pragma once

#include <string_view>

namespace Kest::Host {

extern const std::string_view kDevelopmentHostText;

}  // namespace Kest::Host
