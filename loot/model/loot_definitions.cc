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

LootDefinitions::LootDefinitions()
    : LootDefinitions({MakeLootItems({}), MakeShared(std::vector<SVDS::LootSvdsRecipeClientDTO>()),
                       MakeShared(BindingProperty())}) {}

LootDefinitions::LootDefinitions(Lists lists)
    : lists_(std::move(lists)),
      displayCategories_(DisplayCategoriesOf(lists_.items->records())),
      index_(*lists_.recipes, *lists_.queryResults, *lists_.items) {}

std::shared_ptr<const LootItemDefinitions> MakeLootItems(
    std::vector<SVDS::LootItemClientDTO> items) {
  return std::make_shared<const LootItemDefinitions>(std::move(items));
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
