// The whole state of the platform, as "GET /_host/world" shows it.
#pragma once

#include "host/world/controls/platform.h"

namespace Kest::Host {

Json WorldStateJson(Platform& platform);

}  // namespace Kest::Host
