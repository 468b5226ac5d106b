// LootCounts finds what the player lacks for one craft of a recipe, as the platform will see it:
//
// - A slot takes the items whose loot name or loot id it lists, several of them together if need
//   be. An item that two slots list is used up by one of them, so all slots are looked at together.
// - Items issued for a champion (those with a reference id) go together only when they are issued
//   for the same one. Items without a reference id go with any.
// - What is held is given to the slots by rising number, each getting as much as it can have beside
//   what those before it get in all. What is missing then is what no assignment can give.
//
// It borrows the store's items and the recipes' lists: use it before the next change of the store
// or the definitions. All is found once: what a list takes, what the lists of a recipe have in
// common, and the result. Threads: module tasks only.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "loot/model/recipe_index.h"
#include "loot/state/slot_assignment.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

// What the slots of one query take together.
struct Ingredient {
  const std::vector<std::string>* lootNames = nullptr;  // never null
  std::string_view essence;                             // the first of them that is one, if any
  int64_t quantity = 0;
  int64_t missing = 0;
};

// What one craft takes, by the lowest slot number of each query.
struct CraftNeeds {
  std::vector<Ingredient> ingredients;
  std::string_view refId;  // what the issued items of the craft are issued for; empty: for nothing

  bool IsMet() const;
};

class LootCounts {
 public:
  using Item = const Api::PlayerLoot*;
  using LootNames = const std::vector<std::string>*;

  explicit LootCounts(const Api::PlayerLootItems& items);

  // What the recipe takes. A craft for an item issued for `refId` takes no items issued for
  // another; when `refId` is empty, the craft is for the reference id that lacks least. A quantity
  // below 1 takes nothing. The result lives as long as this, which borrows `refId`.
  const CraftNeeds& FindNeeds(const IndexedRecipe& recipe, std::string_view refId);

  // The items that one list takes, sorted by address, each once.
  const std::vector<Item>& FindFitting(LootNames lootNames) { return FindListed(lootNames).items; }

 private:
  // The items that one list takes.
  struct Listed {
    std::vector<Item> items;                    // sorted, each once
    std::map<std::string_view, int64_t> units;  // by reference id
  };
  // The items that several lists of a recipe take, by reference id.
  using SharedSupplies = std::map<std::string_view, Supplies>;

  CraftNeeds CollectNeeds(const IndexedRecipe& recipe, std::string_view refId);
  const Listed& FindListed(LootNames lootNames);
  const SharedSupplies& FindShared(const std::vector<Ingredient>& ingredients);
  SharedSupplies CollectShared(const std::vector<LootNames>& lists);
  std::set<std::string_view> RefIdsOf(const std::vector<Ingredient>& ingredients);
  // Sets what is missing when the craft is for `refId`; returns the sum.
  int64_t SetMissing(std::vector<Ingredient>* ingredients, std::string_view refId);

  const Api::PlayerLootItems& items_;
  std::unordered_map<std::string_view, std::vector<Item>> issued_;  // by loot name
  std::unordered_map<LootNames, Listed> listed_;
  std::map<std::vector<LootNames>, SharedSupplies> shared_;
  std::map<std::pair<const IndexedRecipe*, std::string_view>, CraftNeeds> found_;
};

}  // namespace Kest::Client::Loot
