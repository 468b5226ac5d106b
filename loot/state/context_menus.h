// ContextMenus builds what the player may do with an item: redeem it, or use it in a recipe.
// Threads: no lock; handlers and module tasks only. Makes no calls.
#pragma once

#include <string>
#include <vector>

#include "loot/state/loot_counts.h"
#include "loot/state/loot_state.h"
#include "loot/state/recipe_views.h"

namespace Kest::Client::Loot {

class ContextMenus {
 public:
  // Borrows both, which outlive it.
  ContextMenus(const LootState& state, const RecipeViews& recipes)
      : state_(state), recipes_(recipes) {}

  // "REDEEM" first when the item can be redeemed, then one entry for each recipe that takes the
  // item as its first ingredient, in the definitions' order. An item that is not stored has no
  // menu. `counts` is of the store as it stands.
  std::vector<Api::ContextMenu> MenuOf(const std::string& lootId, LootCounts& counts) const;

 private:
  Api::ContextMenu RecipeEntry(const IndexedRecipe& recipe, LootCounts& counts) const;
  std::string NameOf(const std::string& lootId) const;

  const LootState& state_;
  const RecipeViews& recipes_;
};

}  // namespace Kest::Client::Loot
