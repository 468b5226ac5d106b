// Writes a world as a world file: what ReadWorldFile reads back as the same world in the same
// state.
#pragma once

#include "host/world/data/world_data.h"

namespace Kest::Host {

Json WorldFileJson(const WorldData& data);

}  // namespace Kest::Host
