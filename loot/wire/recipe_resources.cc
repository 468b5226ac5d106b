#include "loot/wire/recipe_resources.h"

#include "binding/convert/define_struct.h"
#include "loot/wire/loot_enums.h"

namespace Kest::Client::Loot::Api {

void RegisterRecipeResources(TypeRegistry& registry) {
  DefineStruct<RecipeSlot>(registry, "RecipeSlot", kApiNamespace)
      .Field<&RecipeSlot::slotNumber>("slotNumber")
      .Field<&RecipeSlot::lootIds>("lootIds")
      .Field<&RecipeSlot::tags>("tags")
      .Field<&RecipeSlot::quantity>("quantity");
  DefineStruct<RecipeMenuConfig>(registry, "RecipeMenuConfig", kApiNamespace)
      .Field<&RecipeMenuConfig::enabled>("enabled")
      .Field<&RecipeMenuConfig::lootItemsUsingBreakoutRecipeMenu>(
          "lootItemsUsingBreakoutRecipeMenu")
      .Field<&RecipeMenuConfig::alwaysShowLootIds>("alwaysShowLootIds");
  DefineStruct<CurrencyConfiguration>(registry, "CurrencyConfiguration", kApiNamespace)
      .Field<&CurrencyConfiguration::currenciesUsingCapWallets>("currenciesUsingCapWallets");
  DefineStruct<RecipeOutput>(registry, "RecipeOutput", kApiNamespace)
      .Field<&RecipeOutput::lootName>("lootName")
      .Field<&RecipeOutput::quantity>("quantity");
  DefineStruct<LootDescription>(registry, "LootDescription", kApiNamespace)
      .Field<&LootDescription::lootName>("lootName")
      .Field<&LootDescription::childLootTableNames>("childLootTableNames")
      .Field<&LootDescription::localizationMap>("localizationMap")
      .Field<&LootDescription::localizationLongDescriptionMap>("localizationLongDescriptionMap");
  DefineStruct<RecipeMetadata>(registry, "RecipeMetadata", kApiNamespace)
      .Field<&RecipeMetadata::guaranteedDescriptions>("guaranteedDescriptions")
      .Field<&RecipeMetadata::bonusDescriptions>("bonusDescriptions")
      .Field<&RecipeMetadata::tooltipsDisabled>("tooltipsDisabled");
  DefineStruct<Recipe>(registry, "Recipe", kApiNamespace)
      .Field<&Recipe::recipeName>("recipeName")
      .Field<&Recipe::type>("type")
      .Field<&Recipe::description>("description")
      .Field<&Recipe::contextMenuText>("contextMenuText")
      .Field<&Recipe::requirementText>("requirementText")
      .Field<&Recipe::imagePath>("imagePath")
      .Field<&Recipe::displayCategories>("displayCategories")
      .Field<&Recipe::crafterName>("crafterName")
      .Field<&Recipe::slots>("slots")
      .Field<&Recipe::outputs>("outputs")
      .Field<&Recipe::metadata>("metadata");
}

}  // namespace Kest::Client::Loot::Api
