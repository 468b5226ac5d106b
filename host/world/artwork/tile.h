// Draws a picture for what has none: a tile with name, type and a sign, in the colour of its
// rarity, or of its type where the rarity is an ordinary one.
#pragma once

#include <string>

#include "host/world/artwork/artwork.h"

namespace Kest::Host {

// An SVG of 128 x 128. Any text may be in `artwork`.
std::string DrawTile(const Artwork& artwork);

}  // namespace Kest::Host
