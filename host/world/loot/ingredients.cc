#include "host/world/loot/ingredients.h"

#include <deque>
#include <optional>

namespace Kest::Host {
namespace {

// Room for one named item: the whole of a slot, or one unit of it.
struct Place {
  const RecipeSlot* slot;
  int64_t quantity;
};

// One place per slot, or one per unit, whichever the number of items asks for.
std::optional<std::vector<Place>> PlacesFor(const Recipe& recipe, size_t itemCount) {
  std::vector<Place> places;
  int64_t units = 0;
  for (const RecipeSlot& slot : recipe.slots) {
    places.push_back({&slot, slot.quantity});
    units += slot.quantity;
  }
  if (itemCount == places.size()) return places;
  if (static_cast<int64_t>(itemCount) != units) return std::nullopt;
  places.clear();
  for (const RecipeSlot& slot : recipe.slots) {
    places.insert(places.end(), static_cast<size_t>(slot.quantity), Place{&slot, 1});
  }
  return places;
}

// Assigns items to places one by one. When an item finds only taken places, those who hold them
// move on if they can.
class Seating {
 public:
  Seating(const std::vector<Place>& places, const std::vector<LootKey>& items)
      : places_(places),
        items_(items),
        holder_(places.size(), kNobody),
        seat_(items.size(), kNobody) {}

  bool Seat(size_t item) {
    std::vector<size_t> askedBy(places_.size(), kNobody);
    std::deque<size_t> asking = {item};
    while (!asking.empty()) {
      const size_t current = asking.front();
      asking.pop_front();
      for (size_t place = 0; place < places_.size(); ++place) {
        if (askedBy[place] != kNobody || !Accepts(place, items_[current])) continue;
        askedBy[place] = current;
        if (holder_[place] == kNobody) {
          MoveUp(item, place, askedBy);
          return true;
        }
        asking.push_back(holder_[place]);
      }
    }
    return false;
  }

  const Place& PlaceOf(size_t item) const { return places_[seat_[item]]; }

 private:
  static constexpr size_t kNobody = static_cast<size_t>(-1);

  bool Accepts(size_t place, const LootKey& key) const {
    const auto& accepted = places_[place].slot->accepted;
    return accepted.contains(key.lootName) || accepted.contains(key.LootId());
  }

  // Ends with `item` seated; everyone on the way takes the place he asked for.
  void MoveUp(size_t item, size_t place, const std::vector<size_t>& askedBy) {
    while (true) {
      const size_t mover = askedBy[place];
      const size_t left = seat_[mover];
      holder_[place] = mover;
      seat_[mover] = place;
      if (mover == item) return;
      place = left;
    }
  }

  const std::vector<Place>& places_;
  const std::vector<LootKey>& items_;
  std::vector<size_t> holder_;  // by place
  std::vector<size_t> seat_;    // by item
};

}  // namespace

Maybe<LootCounts> TakeIngredients(const Recipe& recipe, const std::vector<LootKey>& items,
                                  int64_t repeat) {
  const auto places = PlacesFor(recipe, items.size());
  if (!places) {
    return Failure{"recipe " + recipe.recipeName + " has " + std::to_string(recipe.slots.size()) +
                       " slots, but " + std::to_string(items.size()) + " items were named",
                   400};
  }
  Seating seating(*places, items);
  for (size_t i = 0; i < items.size(); ++i) {
    if (seating.Seat(i)) continue;
    return Failure{"no free slot of recipe " + recipe.recipeName + " takes " + items[i].LootId(),
                   400};
  }
  LootCounts taken;
  for (size_t i = 0; i < items.size(); ++i) {
    taken[items[i]] += seating.PlaceOf(i).quantity * repeat;
  }
  return taken;
}

}  // namespace Kest::Host
