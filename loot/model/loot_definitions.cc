#include "loot/model/loot_definitions.h"

#include <set>
#include <utility>

#include "loot/model/loot_words.h"

namespace Kest::Client::Loot {

void LootDefinitions::ReplaceItems(std::vector<SVDS::LootItemClientDTO> items) {
  items_.Replace(std::move(items));
  indexIsStale_ = true;
  CollectDisplayCategories();
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

void LootDefinitions::CollectDisplayCategories() {
  std::set<std::string_view> categories;
  for (const SVDS::LootItemClientDTO& item : items()) {
    if (!item.displayCategories.empty()) categories.insert(item.displayCategories);
  }
  displayCategories_.assign(categories.begin(), categories.end());
  SortByRank(kTypeCategoryOrder, &displayCategories_);
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
