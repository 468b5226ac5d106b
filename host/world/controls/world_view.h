// What the controls show of the platform.
#pragma once

#include "host/world/controls/platform.h"

namespace Kest::Host {

// What is going on: "GET /_host/state".
Json WorldStateJson(Platform& platform);
// The world as it is now, as a world file: "GET /_host/world".
Json PresentWorldJson(Platform& platform);

}  // namespace Kest::Host
