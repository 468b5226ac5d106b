// Reads a world file into WorldData and checks that it holds together: every name refers to
// something, every id is unique. docs/worlds.md describes the format.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "host/world/data/world_data.h"

namespace Kest::Host {

// A world's text and the name it has in messages.
struct WorldText {
  std::string name;
  std::string text;
};

struct WorldReading {
  // Finds the world that the file `from` extends. Empty: the shipped ones are found, by their
  // names.
  std::function<Maybe<WorldText>(const std::string& extends, const std::string& from)> findBase;
  uint64_t seed = 1;                             // of what a world has made up
  std::vector<std::string>* warnings = nullptr;  // "file:line:column: message", if wanted
};

// The failure message is "file:line:column: message".
Maybe<WorldData> ReadWorldFile(const WorldText& file, const WorldReading& reading);

}  // namespace Kest::Host
