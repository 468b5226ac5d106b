// Where a world comes from: a file, or the sample inside the program.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/maybe_type.h"
#include "host/world/world.h"

namespace Kest::Host {

// Reads the world at `path`, or the sample when it is empty. A failure names the file and, for a
// broken one, line and column.
Maybe<std::unique_ptr<World>> LoadWorld(const std::string& path, uint64_t seed);

}  // namespace Kest::Host
