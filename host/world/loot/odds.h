// What a recipe gives and how often: tried with the service's own code, and evaluated from the
// tables.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/world/data/seeded_random.h"
#include "host/world/data/world_data.h"

namespace Kest::Host {

struct ItemOdds {
  int64_t drawn = 0;     // trials that gave it
  int64_t quantity = 0;  // how many they gave
  std::optional<double>
      exact;  // how likely one craft gives it; nothing where that is too much work
};
using OddsByLootName = std::map<std::string, ItemOdds>;

// How many entries of tables a craft of the recipe looks at.
int64_t DrawCost(const WorldData& data, const PlatformRecipe& recipe);

// Crafts the recipe `trials` times from the present state, which stays as it is, and evaluates how
// likely each item is in one craft. The time is that of trials * DrawCost.
OddsByLootName TryOdds(const WorldData& data, const PlatformRecipe& recipe,
                       const Inventory& inventory, const PlatformCollections& collections,
                       int64_t trials, SeededRandom& random);

// The bounds between which a share lies with a certainty of 95 % when `drawn` of `trials` had it:
// Wilson's score interval.
struct ShareInterval {
  double low;
  double high;
};
ShareInterval WilsonInterval(int64_t drawn, int64_t trials);

}  // namespace Kest::Host
