// Rolls what a recipe gives.
#pragma once

#include <string>
#include <vector>

#include "host/world/data/seeded_random.h"
#include "host/world/data/world_data.h"

namespace Kest::Host {

// The entries of a table that a draw chooses from: all, or without duplicates those whose item is
// neither in `added` nor held or owned, as long as there is one. `table` must outlive the result.
std::vector<const OddsEntry*> DrawCandidates(const WorldData& data,
                                             const std::vector<OddsEntry>& table,
                                             bool allowDuplicates, const Inventory& inventory,
                                             const PlatformCollections& collections,
                                             const CountsByKey& added);

// Rolls every output `repeat` times by its probability. An output that names an odds table gives
// one of its entries by weight; where duplicates are not allowed, entries that the player holds or
// owns already are left aside as long as others remain. A champion token is issued for the
// champion of `refId`, or to a random one when that is empty.
CountsByKey RollOutputs(const WorldData& data, const PlatformRecipe& recipe, int64_t repeat,
                        const Inventory& inventory, const PlatformCollections& collections,
                        const std::string& refId, SeededRandom& random);

}  // namespace Kest::Host
