#include "host/world/loot/loot_definitions_json.h"

namespace Kest::Host {
namespace {

Json DefinitionJson(const LootDefinition& definition) {
  return Json{{"lootName", definition.lootName},
              {"asset", definition.asset},
              {"type", definition.type},
              {"rarity", definition.rarity},
              {"value", definition.value},
              {"storeItemId", definition.storeItemId},
              {"upgradeLootName", definition.upgradeLootName},
              {"expiryTime", definition.expiryTime},
              {"tags", definition.tags},
              {"displayCategories", definition.displayCategories},
              {"rentalSeconds", definition.rentalSeconds},
              {"rentalGames", definition.rentalGames}};
}

Json RecipeJson(const PlatformRecipe& recipe) {
  Json slots = Json::array();
  for (const PlatformRecipeSlot& slot : recipe.slots) {
    slots.push_back(Json{{"slotNumber", slot.slotNumber},
                         {"query", slot.query},
                         {"quantityExpression", slot.quantityExpression}});
  }
  Json outputs = Json::array();
  for (const PlatformRecipeOutput& output : recipe.outputs) {
    outputs.push_back(Json{{"lootName", output.lootName},
                           {"quantityExpression", output.quantityExpression},
                           {"probability", output.probability},
                           {"allowDuplicates", output.allowDuplicates}});
  }
  return Json{{"recipeName", recipe.recipeName},
              {"type", recipe.type},
              {"displayCategories", recipe.displayCategories},
              {"crafterName", recipe.crafterName},
              {"slots", std::move(slots)},
              {"outputs", std::move(outputs)},
              {"metadata", recipe.metadata}};
}

// One part with its version; its content only when the caller holds another version.
template <typename Make>
Json Part(const char* name, Json empty, int64_t version, int64_t known, Make make) {
  return Json{{name, version == known ? std::move(empty) : make()}, {"lastUpdate", version}};
}

}  // namespace

Json PlayerLootDefinitionsJson(const WorldData& data, const Inventory& inventory,
                               const DefinitionVersions& known) {
  const auto definitions = [&]() -> Json {
    Json list = Json::array();
    for (const LootDefinition& definition : data.definitions) {
      list.push_back(DefinitionJson(definition));
    }
    return list;
  };
  const auto recipes = [&]() -> Json {
    Json list = Json::array();
    for (const PlatformRecipe& recipe : data.recipes) list.push_back(RecipeJson(recipe));
    return list;
  };
  const auto queries = [&]() -> Json { return data.queries; };
  return Json{
      {"lootItemList",
       Part("lootItems", Json::array(), data.versions.lootItems, known.lootItems, definitions)},
      {"recipeList", Part("recipes", Json::array(), data.versions.recipes, known.recipes, recipes)},
      {"queryResult",
       Part("queryToLootNames", Json::object(), data.versions.queries, known.queries, queries)},
      {"playerLoot", InventoryJson(inventory)}};
}

}  // namespace Kest::Host
