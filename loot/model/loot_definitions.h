// LootDefinitions holds what the service defines: loot items, recipes and query results, with the
// index of the recipes. It never changes: a retrieval makes a new one, which shares the lists that
// stayed, and replaces the old one whole. What points into it is valid while its pointer is held,
// also while other tasks run. Threads: any; it is constant.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "loot/model/recipe_index.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootDefinitions {
 public:
  // None is null.
  struct Lists {
    std::shared_ptr<const LootItemDefinitions> items;
    std::shared_ptr<const std::vector<SVDS::LootSvdsRecipeClientDTO>> recipes;
    std::shared_ptr<const BindingProperty> queryResults;
  };
  // Of empty lists.
  LootDefinitions();
  explicit LootDefinitions(Lists lists);

  const Lists& lists() const { return lists_; }

  // Null for an unknown loot name.
  const SVDS::LootItemClientDTO* Find(std::string_view lootName) const {
    return lists_.items->Find(lootName);
  }
  // In the service's order.
  const std::vector<SVDS::LootItemClientDTO>& items() const { return lists_.items->records(); }

  // The distinct display categories of all items: unknown ones first, in alphabetical order, then
  // the others by priority.
  const std::vector<std::string>& displayCategories() const { return displayCategories_; }

  // The recipes by what they take.
  const RecipeIndex& recipes() const { return index_; }

 private:
  Lists lists_;
  std::vector<std::string> displayCategories_;
  RecipeIndex index_;
};

using LootDefinitionsPointer = std::shared_ptr<const LootDefinitions>;

// A list for LootDefinitions.
template <class T>
std::shared_ptr<const T> MakeShared(T list) {
  return std::make_shared<const T>(std::move(list));
}
std::shared_ptr<const LootItemDefinitions> MakeLootItems(
    std::vector<SVDS::LootItemClientDTO> items);

// The definition as the front end sees it.
Api::LootItem PublishedLootItem(const SVDS::LootItemClientDTO& definition);

}  // namespace Kest::Client::Loot
