#include "loot/wire/recipe_resources.h"

#include "binding/convert/define_struct.h"
#include "loot/wire/loot_enums.h"

namespace Kest::Client::Loot::Api {

void RegisterRecipeResources(TypeRegistry& registry) {
  DefineStruct<RecipeSlot>(registry, "RecipeSlot", kApiNamespace)
      .Fields<&RecipeSlot::slotNumber, &RecipeSlot::lootIds, &RecipeSlot::tags,
              &RecipeSlot::quantity>();
  DefineStruct<RecipeMenuConfig>(registry, "RecipeMenuConfig", kApiNamespace)
      .Fields<&RecipeMenuConfig::enabled, &RecipeMenuConfig::lootItemsUsingBreakoutRecipeMenu,
              &RecipeMenuConfig::alwaysShowLootIds>();
  DefineStruct<CurrencyConfiguration>(registry, "CurrencyConfiguration", kApiNamespace)
      .Field<&CurrencyConfiguration::currenciesUsingCapWallets>();
  DefineStruct<RecipeOutput>(registry, "RecipeOutput", kApiNamespace)
      .Fields<&RecipeOutput::lootName, &RecipeOutput::quantity>();
  DefineStruct<LootDescription>(registry, "LootDescription", kApiNamespace)
      .Fields<&LootDescription::lootName, &LootDescription::childLootTableNames,
              &LootDescription::localizationMap,
              &LootDescription::localizationLongDescriptionMap>();
  DefineStruct<RecipeMetadata>(registry, "RecipeMetadata", kApiNamespace)
      .Fields<&RecipeMetadata::guaranteedDescriptions, &RecipeMetadata::bonusDescriptions,
              &RecipeMetadata::tooltipsDisabled>();
  DefineStruct<Recipe>(registry, "Recipe", kApiNamespace)
      .Fields<&Recipe::recipeName, &Recipe::type, &Recipe::description, &Recipe::contextMenuText,
              &Recipe::requirementText, &Recipe::imagePath, &Recipe::displayCategories,
              &Recipe::crafterName, &Recipe::slots, &Recipe::outputs, &Recipe::metadata>();
}

}  // namespace Kest::Client::Loot::Api
