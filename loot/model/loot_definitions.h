// LootDefinitions holds what the service defines: loot items, recipes and query results, each
// replaced as a whole. Threads: module tasks only.
// Lifetime: pointers and references are valid until the next replacement of any of the three.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "loot/model/recipe_index.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootDefinitions {
 public:
  // Each changes nothing when memory runs out.
  void ReplaceItems(std::vector<SVDS::LootItemClientDTO> items);
  void ReplaceRecipes(std::vector<SVDS::LootSvdsRecipeClientDTO> recipes);
  void ReplaceQueryResults(BindingProperty queryToLootNames);

  // Null for an unknown loot name.
  const SVDS::LootItemClientDTO* Find(std::string_view lootName) const {
    return items_.Find(lootName);
  }
  // In the service's order.
  const std::vector<SVDS::LootItemClientDTO>& items() const { return items_.records(); }

  // The distinct display categories of all items: unknown ones first, in alphabetical order, then
  // the others by priority.
  const std::vector<std::string>& displayCategories() const { return displayCategories_; }

  // The recipes by what they take. Builds the index when a replacement has made it stale, so that
  // a retrieval that replaces all three pays once.
  const RecipeIndex& recipes() const;

 private:
  LootItemDefinitions items_;
  std::vector<SVDS::LootSvdsRecipeClientDTO> recipes_;
  BindingProperty queryToLootNames_;
  std::vector<std::string> displayCategories_;
  mutable RecipeIndex index_;
  mutable bool indexIsStale_ = false;
};

// The definition as the front end sees it.
Api::LootItem PublishedLootItem(const SVDS::LootItemClientDTO& definition);

}  // namespace Kest::Client::Loot
