// What the pictures of a world show: it names their paths, but has no pictures.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/world/data/world_data.h"

namespace Kest::Host {

struct Artwork {
  std::string name;    // for people; never empty
  std::string type;    // of loot, such as "SKIN_RENTAL"; "RECIPE", "TABLE"
  std::string rarity;  // empty: unknown
};

// What the picture at `path` shows, or nothing when this world names no such picture. That of a
// definition without one has the path that its asset, or its name, is part of.
std::optional<Artwork> FindArtwork(const WorldData& data, std::string_view path);

}  // namespace Kest::Host
