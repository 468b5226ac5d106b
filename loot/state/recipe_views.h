// RecipeViews builds the recipes for the front end: with descriptions and images from the game
// data, and slots that list what they take. Threads: module tasks only.
#pragma once

#include <string>
#include <vector>

#include "loot/state/loot_state.h"
#include "loot/wire/recipe_resources.h"

namespace Kest::Client::Loot {

class RecipeViews {
 public:
  // Borrows the state, which outlives it.
  explicit RecipeViews(const LootState& state) : state_(state) {}

  // The indexed recipes that take the item as their first ingredient, in the definitions' order. An
  // item that is not stored is known by its id alone. Valid until the definitions change.
  std::vector<const IndexedRecipe*> FindInitialItemRecipes(const std::string& lootId) const;

  // In full.
  std::vector<Api::Recipe> Show(const std::vector<const IndexedRecipe*>& recipes) const;

 private:
  const LootState& state_;
};

}  // namespace Kest::Client::Loot
