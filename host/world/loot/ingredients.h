// Puts the ingredients of a craft into the slots of its recipe.
#pragma once

#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "host/world/data/world_data.h"

namespace Kest::Host {

// What one run of the recipe takes from the player, repeated `repeat` times. The list names either
// one item per slot, which then gives the slot's whole quantity, or one item per unit ("three
// shards": three names). The order does not matter as long as every item finds a slot of its own
// that accepts it and no two items have different reference ids.
// The failure message says which item or number does not fit.
Maybe<CountsByKey> TakeIngredients(const PlatformRecipe& recipe, const std::vector<LootKey>& items,
                                   int64_t repeat);

}  // namespace Kest::Host
