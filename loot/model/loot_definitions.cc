#include "loot/model/loot_definitions.h"

#include <set>
#include <utility>

#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

std::vector<std::string> DisplayCategoriesOf(const std::vector<SVDS::LootItemClientDTO>& items) {
  std::set<std::string_view> distinct;
  for (const SVDS::LootItemClientDTO& item : items) {
    distinct.insert(item.displayCategories);
  }
  std::vector<std::string> categories(distinct.begin(), distinct.end());
  SortByRank(kTypeCategoryOrder, &categories);
  return categories;
}

}  // namespace

void LootDefinitions::ReplaceItems(std::vector<SVDS::LootItemClientDTO> items) {
  std::vector<std::string> categories = DisplayCategoriesOf(items);
  items_.Replace(std::move(items));
  displayCategories_ = std::move(categories);
  indexIsStale_ = true;
}

void LootDefinitions::ReplaceRecipes(std::vector<SVDS::LootSvdsRecipeClientDTO> recipes) {
  recipes_ = std::move(recipes);
  indexIsStale_ = true;
}

void LootDefinitions::ReplaceQueryResults(BindingProperty queryToLootNames) {
  queryToLootNames_ = std::move(queryToLootNames);
  indexIsStale_ = true;
}

const RecipeIndex& LootDefinitions::recipes() const {
  if (indexIsStale_) {
    index_.Rebuild(recipes_, queryToLootNames_, items_);
    indexIsStale_ = false;
  }
  return index_;
}

Api::LootItem PublishedLootItem(const SVDS::LootItemClientDTO& definition) {
  return {.lootName = definition.lootName,
          .asset = definition.asset,
          .type = definition.type,
          .rarity = definition.rarity,
          .value = definition.value,
          .storeItemId = definition.storeItemId,
          .upgradeLootName = definition.upgradeLootName,
          .expiryTime = definition.expiryTime,
          .tags = definition.tags,
          .displayCategories = definition.displayCategories,
          .rentalSeconds = definition.rentalSeconds,
          .rentalGames = definition.rentalGames};
}

}  // namespace Kest::Client::Loot
