// Reads a world file into WorldData and checks that it holds together: every name refers to
// something, every id is unique. docs/worlds.md describes the format.
#pragma once

#include <string_view>

#include "base/maybe_type.h"
#include "host/world/data/world_data.h"

namespace Kest::Host {

// The failure message is "file:line:column: message".
Maybe<WorldData> ReadWorldFile(std::string_view text, std::string_view fileName);

}  // namespace Kest::Host
