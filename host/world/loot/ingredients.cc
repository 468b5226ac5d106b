#include "host/world/loot/ingredients.h"

#include <deque>
#include <optional>
#include <utility>

namespace Kest::Host {
namespace {

// What one named item fills: a whole slot, or one unit of it.
struct Place {
  const PlatformRecipeSlot* slot;
  int64_t quantity;
};

// One place per slot, or one per unit, depending on the number of items.
std::optional<std::vector<Place>> PlacesFor(const PlatformRecipe& recipe, size_t itemCount) {
  std::vector<Place> places;
  int64_t units = 0;
  for (const PlatformRecipeSlot& slot : recipe.slots) {
    places.push_back({&slot, slot.quantity});
    units += slot.quantity;
  }
  if (itemCount == places.size()) return places;
  if (static_cast<int64_t>(itemCount) != units) return std::nullopt;
  places.clear();
  for (const PlatformRecipeSlot& slot : recipe.slots) {
    places.insert(places.end(), static_cast<size_t>(slot.quantity), Place{&slot, 1});
  }
  return places;
}

// Matches each item with a place of its own: Kuhn's algorithm, its search breadth-first.
class BipartiteMatcher {
 public:
  BipartiteMatcher(const std::vector<Place>& places, const std::vector<LootKey>& items)
      : places_(places),
        items_(items),
        itemAt_(places.size(), kNone),
        placeOf_(items.size(), kNone) {}

  // False: no augmenting path leads from `item` to a free place; the matching stays as it is.
  bool TryAssign(size_t item) {
    std::vector<size_t> reachedFrom(places_.size(), kNone);
    std::deque<size_t> waiting = {item};
    while (!waiting.empty()) {
      const size_t current = waiting.front();
      waiting.pop_front();
      for (size_t place = 0; place < places_.size(); ++place) {
        if (reachedFrom[place] != kNone || !Accepts(place, items_[current])) continue;
        reachedFrom[place] = current;
        if (itemAt_[place] == kNone) {
          ApplyAugmentingPath(place, reachedFrom);
          return true;
        }
        waiting.push_back(itemAt_[place]);
      }
    }
    return false;
  }

  const Place& PlaceOf(size_t item) const { return places_[placeOf_[item]]; }

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  bool Accepts(size_t place, const LootKey& key) const {
    const auto& accepted = places_[place].slot->accepted;
    return accepted.contains(key.lootName) || accepted.contains(key.LootId());
  }

  // Back along the path from its free end: each item takes the place that was reached from it.
  void ApplyAugmentingPath(size_t place, const std::vector<size_t>& reachedFrom) {
    while (place != kNone) {
      const size_t item = reachedFrom[place];
      itemAt_[place] = item;
      std::swap(placeOf_[item], place);
    }
  }

  const std::vector<Place>& places_;
  const std::vector<LootKey>& items_;
  std::vector<size_t> itemAt_;   // by place
  std::vector<size_t> placeOf_;  // by item
};

// The first item that is issued for another champion than an item before it; null when none is.
const LootKey* FindMisfit(const std::vector<LootKey>& items) {
  const std::string* refId = nullptr;
  for (const LootKey& item : items) {
    if (item.refId.empty()) continue;
    if (refId != nullptr && *refId != item.refId) return &item;
    refId = &item.refId;
  }
  return nullptr;
}

}  // namespace

Maybe<CountsByKey> TakeIngredients(const PlatformRecipe& recipe, const std::vector<LootKey>& items,
                                   int64_t repeat) {
  if (const LootKey* misfit = FindMisfit(items)) {
    return Failure{misfit->LootId() + " does not go with items of another reference id", 400};
  }
  const auto places = PlacesFor(recipe, items.size());
  if (!places) {
    return Failure{"recipe " + recipe.recipeName + " has " + std::to_string(recipe.slots.size()) +
                       " slots, but " + std::to_string(items.size()) + " items were named",
                   400};
  }
  BipartiteMatcher matcher(*places, items);
  for (size_t i = 0; i < items.size(); ++i) {
    if (matcher.TryAssign(i)) continue;
    return Failure{"no free slot of recipe " + recipe.recipeName + " takes " + items[i].LootId(),
                   400};
  }
  CountsByKey taken;
  for (size_t i = 0; i < items.size(); ++i) {
    taken[items[i]] += matcher.PlaceOf(i).quantity * repeat;
  }
  return taken;
}

}  // namespace Kest::Host
