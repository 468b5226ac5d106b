// Comparisons of what the plugin published, what it returns and what the platform holds. Each
// returns what differs, in words; empty when nothing does. At most the first few are named.
#pragma once

#include <string>

#include "host/audit/item_map.h"
#include "host/world/data/inventory.h"

namespace Kest::Host {

// What the platform holds.
Counts HeldCounts(const Inventory& inventory);

std::string Differences(const ItemDigests& expected, const ItemDigests& found);
std::string Differences(const Counts& expected, const Counts& found);

}  // namespace Kest::Host
