// The items of a map, "/tav-loot/v1/player-loot-map" or its versioned form, read without a tree.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Kest::Host {

using ItemDigests = std::map<std::string, uint64_t, std::less<>>;  // by loot id
using Counts = std::map<std::string, int64_t, std::less<>>;        // the same

struct ReadMap {
  ItemDigests items;
  Counts counts;
  int64_t version = 0;  // of the versioned one
  uint64_t digest = 0;  // of all of it; 0: no JSON
};
ReadMap ReadItemMap(std::string_view json);
ReadMap ReadVersionedItemMap(std::string_view json);

}  // namespace Kest::Host
