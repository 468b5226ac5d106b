// The loot of a world file: definitions, queries, odds tables, recipes.
#include <algorithm>
#include <string>

#include "host/json/json_text.h"
#include "host/world/file/quantity_expression.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

// Asks for the members in the order of the service's record.
LootDefinition ReadDefinition(FieldReader& fields) {
  LootDefinition definition;
  definition.lootName = fields.String("lootName");
  fields.StringOr("asset", "");
  definition.type = fields.String("type");
  fields.StringOr("rarity", "DEFAULT");
  fields.IntegerOr("value", 0, kMin32, kMax32);
  definition.storeItemId = fields.IntegerOr("storeItemId", -1, -1, kMax32);
  fields.StringOr("upgradeLootName", "");
  definition.expiryTime = fields.IntegerOr("expiryTime", -1, -1, kMax64);
  fields.StringOr("tags", "");
  fields.StringOr("displayCategories", "");
  fields.IntegerOr("rentalSeconds", 0, 0, kMax64);
  fields.IntegerOr("rentalGames", 0, 0, kMax32);
  definition.record = fields.Values();
  return definition;
}

// What can go wrong with a definition by itself.
std::string DefinitionFault(const LootDefinition& definition,
                            const PlatformCollections& collections) {
  if (definition.lootName.find_first_of("-/?#") != std::string::npos) {
    return "loot name " + JsonString(definition.lootName) +
           " must not hold \"-\", \"/\", \"?\" or \"#\": loot ids are cut there";
  }
  const auto collection = CollectionOfLootType(definition.type);
  if (!collection || *collection == Collection::kChromas || definition.storeItemId == -1) return "";
  if (collections.Find(*collection, definition.storeItemId) != nullptr) return "";
  return "storeItemId " + std::to_string(definition.storeItemId) + " is not among the " +
         std::string(CollectionName(*collection));
}

// A loot name, or a loot id made of one and a reference id.
bool IsLoot(const WorldData& data, const std::string& text) {
  const size_t dash = text.find('-');
  return data.FindDefinition(text.substr(0, dash)) != nullptr &&
         (dash == std::string::npos || IsLootRefId(std::string_view(text).substr(dash + 1)));
}

int64_t ReadQuantity(FieldReader& fields) {
  const std::string expression = fields.StringOr("quantityExpression", "1");
  const auto quantity = EvaluateQuantity(expression);
  if (quantity && *quantity >= 1 && *quantity <= kMax32) return *quantity;
  fields.FailAt("quantityExpression", "quantity " + JsonString(expression) +
                                          " is not a sum, difference, product or quotient of "
                                          "integers that gives at least 1");
  return 1;
}

// The names that a slot's query stands for: its entry, or the definition of that name.
std::unordered_set<std::string> ReadQuery(FieldReader& fields, const WorldData& data) {
  std::unordered_set<std::string> names;
  const std::string name = fields.String("query");
  if (const auto query = data.queries.find(name); query != data.queries.end()) {
    // Iterating over a single string gives that string.
    for (const Json& accepted : *query) names.insert(accepted.get<std::string>());
  } else if (data.FindDefinition(name) != nullptr) {
    names.insert(name);
  } else {
    fields.FailAt("query", JsonString(name) + " is neither a query nor a loot name");
  }
  return names;
}

PlatformRecipeSlot ReadSlot(FieldReader& fields, const WorldData& data) {
  PlatformRecipeSlot slot;
  slot.slotNumber = fields.Integer("slotNumber", 0, kMax32);
  slot.accepted = ReadQuery(fields, data);
  slot.quantity = ReadQuantity(fields);
  slot.record = fields.Values();
  return slot;
}

PlatformRecipeOutput ReadOutput(FieldReader& fields, const WorldData& data) {
  PlatformRecipeOutput output;
  output.lootName = fields.String("lootName");
  output.quantity = ReadQuantity(fields);
  output.probability = fields.NumberOr("probability", 1, 0, 1);
  output.allowDuplicates = fields.BoolOr("allowDuplicates", true);
  if (data.FindDefinition(output.lootName) == nullptr && !data.odds.contains(output.lootName)) {
    fields.FailAt("lootName",
                  JsonString(output.lootName) + " is neither a loot name nor an odds table");
  }
  return output;
}

const Json& ReadStringMap(FieldReader& fields, std::string_view name) {
  const Json& strings = fields.ObjectOr(name);
  for (const auto& [key, value] : strings.items()) {
    if (!value.is_string()) fields.FailPart(value, JsonString(key) + " must be a string");
  }
  return strings;
}

Json ReadDescriptions(FieldReader& metadata, std::string_view name) {
  Json descriptions = Json::array();
  metadata.ForEach(name, [&](FieldReader& fields) {
    descriptions.push_back(Json{{"lootName", fields.String("lootName")},
                                {"childLootTableNames", fields.StringsOr("childLootTableNames")},
                                {"localizationMap", ReadStringMap(fields, "localizationMap")},
                                {"localizationLongDescriptionMap",
                                 ReadStringMap(fields, "localizationLongDescriptionMap")}});
  });
  return descriptions;
}

Json ReadMetadata(FieldReader& recipe) {
  FieldReader fields(recipe.ObjectOr("metadata"), recipe);
  Json metadata = {{"guaranteedDescriptions", ReadDescriptions(fields, "guaranteedDescriptions")},
                   {"bonusDescriptions", ReadDescriptions(fields, "bonusDescriptions")},
                   {"tooltipsDisabled", fields.BoolOr("tooltipsDisabled", false)}};
  fields.Finish();
  return metadata;
}

PlatformRecipe ReadRecipe(FieldReader& fields, const WorldData& data) {
  PlatformRecipe recipe;
  Json slots = Json::array();
  Json outputs = Json::array();
  recipe.recipeName = fields.String("recipeName");
  fields.String("type");
  fields.StringOr("displayCategories", "");
  fields.StringOr("crafterName", "");
  fields.ForEach("slots", [&](FieldReader& slot) { recipe.slots.push_back(ReadSlot(slot, data)); });
  fields.ForEach("outputs", [&](FieldReader& output) {
    recipe.outputs.push_back(ReadOutput(output, data));
    outputs.push_back(output.Values());
  });
  const Json metadata = ReadMetadata(fields);
  if (recipe.slots.empty()) fields.FailAt("slots", "a recipe needs at least one slot");
  std::sort(recipe.slots.begin(), recipe.slots.end(),
            [](const auto& a, const auto& b) { return a.slotNumber < b.slotNumber; });
  const auto twice =
      std::adjacent_find(recipe.slots.begin(), recipe.slots.end(),
                         [](const auto& a, const auto& b) { return a.slotNumber == b.slotNumber; });
  if (twice != recipe.slots.end()) {
    fields.FailAt("slots", "duplicate slot number " + std::to_string(twice->slotNumber));
  }
  for (PlatformRecipeSlot& slot : recipe.slots) slots.push_back(std::move(slot.record));
  recipe.record = fields.Values();
  recipe.record.update({{"slots", slots}, {"outputs", outputs}, {"metadata", metadata}});
  return recipe;
}

}  // namespace

void ReadDefinitions(FieldReader& world, WorldData& data) {
  world.ForEach("definitions", [&](FieldReader& fields) {
    LootDefinition definition = ReadDefinition(fields);
    const std::string fault = DefinitionFault(definition, data.collections);
    if (!fault.empty()) fields.Fail(fault);
    if (!data.definitionIndex.emplace(definition.lootName, data.definitions.size()).second) {
      fields.FailAt("lootName", "duplicate loot name " + JsonString(definition.lootName));
    }
    data.definitions.push_back(std::move(definition));
  });
  for (const Json& definition : world.ListOr("definitions")) {
    const auto upgrade = definition.find("upgradeLootName");
    if (!world.ok() || upgrade == definition.end()) continue;
    const auto& lootName = upgrade->get_ref<const std::string&>();
    if (!lootName.empty() && data.FindDefinition(lootName) == nullptr) {
      world.FailPart(*upgrade, "unknown loot name " + WriteJson(*upgrade));
    }
  }
}

void ReadQueries(FieldReader& world, WorldData& data) {
  data.queries = world.ObjectOr("queries");
  for (const Json& query : world.ObjectOr("queries")) {
    if (!query.is_string() && !query.is_array()) {
      world.FailPart(query, "a query must be a loot name or a list of them");
      return;
    }
    for (const Json& name : query) {  // of a single string: that string
      const auto* text = name.get_ptr<const std::string*>();
      if (text != nullptr && IsLoot(data, *text)) continue;
      world.FailPart(name, "unknown loot name " + WriteJson(name));
    }
  }
}

void ReadOdds(FieldReader& world, WorldData& data) {
  const Json& odds = world.ObjectOr("odds");
  FieldReader tables(odds, world);
  for (const auto& [name, table] : odds.items()) {
    if (data.FindDefinition(name) != nullptr) {
      world.FailName(table, JsonString(name) + " is a loot name already");
    }
    std::vector<OddsEntry>& entries = data.odds[name];
    tables.ForEach(name, [&](FieldReader& fields) {
      OddsEntry entry;
      entry.lootName = fields.String("lootName");
      entry.weight = fields.IntegerOr("weight", 1, 1, 1'000'000);
      entry.quantity = fields.IntegerOr("quantity", 1, 1, 1'000'000);
      if (data.FindDefinition(entry.lootName) == nullptr) {
        fields.FailAt("lootName", "unknown loot name " + JsonString(entry.lootName));
      }
      entries.push_back(std::move(entry));
    });
    if (entries.empty()) world.FailName(table, "an odds table needs at least one entry");
  }
}

void ReadRecipes(FieldReader& world, WorldData& data) {
  world.ForEach("recipes", [&](FieldReader& fields) {
    PlatformRecipe recipe = ReadRecipe(fields, data);
    if (!data.recipeIndex.emplace(recipe.recipeName, data.recipes.size()).second) {
      fields.FailAt("recipeName", "duplicate recipe name " + JsonString(recipe.recipeName));
    }
    data.recipes.push_back(std::move(recipe));
  });
}

}  // namespace Kest::Host
