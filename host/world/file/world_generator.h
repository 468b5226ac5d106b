// Makes up a world's worth of things, for screens that have to show many.
#pragma once

#include <cstdint>
#include <string>

namespace Kest::Host {

// A world file, as JSON, with champions, skins, emotes and the like, of which the player has some,
// and with as many different items in the inventory. Equal arguments give equal texts.
std::string GeneratedWorld(int64_t items, uint64_t seed);

}  // namespace Kest::Host
