#include "host/world/loot/loot_definitions_json.h"

namespace Kest::Host {
namespace {

JsonValue DefinitionJson(const LootDefinition& definition) {
  return JsonValue::Object{{"lootName", definition.lootName},
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

JsonValue RecipeJson(const Recipe& recipe) {
  JsonValue::Array slots;
  for (const RecipeSlot& slot : recipe.slots) {
    slots.push_back(JsonValue::Object{{"slotNumber", slot.slotNumber},
                                      {"query", slot.query},
                                      {"quantityExpression", slot.quantityExpression}});
  }
  JsonValue::Array outputs;
  for (const RecipeOutput& output : recipe.outputs) {
    outputs.push_back(JsonValue::Object{{"lootName", output.lootName},
                                        {"quantityExpression", output.quantityExpression},
                                        {"probability", output.probability},
                                        {"allowDuplicates", output.allowDuplicates}});
  }
  return JsonValue::Object{{"recipeName", recipe.recipeName},
                           {"type", recipe.type},
                           {"displayCategories", recipe.displayCategories},
                           {"crafterName", recipe.crafterName},
                           {"slots", std::move(slots)},
                           {"outputs", std::move(outputs)},
                           {"metadata", recipe.metadata}};
}

// One part with its version; its content only when the caller holds another version.
template <typename Make>
JsonValue Part(const char* name, JsonValue empty, int64_t version, int64_t known, Make make) {
  return JsonValue::Object{{name, version == known ? std::move(empty) : make()},
                           {"lastUpdate", version}};
}

}  // namespace

JsonValue PlayerLootDefinitionsJson(const WorldData& data, const Inventory& inventory,
                                    const DefinitionVersions& known) {
  const auto definitions = [&]() -> JsonValue {
    JsonValue::Array list;
    for (const LootDefinition& definition : data.definitions) {
      list.push_back(DefinitionJson(definition));
    }
    return list;
  };
  const auto recipes = [&]() -> JsonValue {
    JsonValue::Array list;
    for (const Recipe& recipe : data.recipes) list.push_back(RecipeJson(recipe));
    return list;
  };
  const auto queries = [&]() -> JsonValue { return data.queries; };
  return JsonValue::Object{
      {"lootItemList", Part("lootItems", JsonValue::Array(), data.versions.lootItems,
                            known.lootItems, definitions)},
      {"recipeList",
       Part("recipes", JsonValue::Array(), data.versions.recipes, known.recipes, recipes)},
      {"queryResult", Part("queryToLootNames", JsonValue::Object(), data.versions.queries,
                           known.queries, queries)},
      {"playerLoot", InventoryJson(inventory)}};
}

}  // namespace Kest::Host
