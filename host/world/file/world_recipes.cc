// The loot of a world file: definitions, queries, odds tables, recipes.
#include <algorithm>
#include <string>

#include "host/json/json_text.h"
#include "host/world/file/quantity_expression.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMin32 = FieldReader::kMin32;
constexpr int64_t kMax32 = FieldReader::kMax32;
constexpr int64_t kMax64 = FieldReader::kMax64;

LootDefinition ReadDefinition(FieldReader& fields) {
  LootDefinition definition;
  definition.lootName = fields.String("lootName");
  definition.asset = fields.StringOr("asset", "");
  definition.type = fields.String("type");
  definition.rarity = fields.StringOr("rarity", "DEFAULT");
  definition.value = fields.IntegerOr("value", 0, kMin32, kMax32);
  definition.storeItemId = fields.IntegerOr("storeItemId", -1, -1, kMax32);
  definition.upgradeLootName = fields.StringOr("upgradeLootName", "");
  definition.expiryTime = fields.IntegerOr("expiryTime", -1, -1, kMax64);
  definition.tags = fields.StringOr("tags", "");
  definition.displayCategories = fields.StringOr("displayCategories", "");
  definition.rentalSeconds = fields.IntegerOr("rentalSeconds", 0, 0, kMax64);
  definition.rentalGames = fields.IntegerOr("rentalGames", 0, 0, kMax32);
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

int64_t ReadQuantity(FieldReader& fields, IssueReport& report, std::string& expression) {
  expression = fields.StringOr("quantityExpression", "1");
  const auto quantity = EvaluateQuantity(expression);
  if (quantity && *quantity >= 1 && *quantity <= kMax32) return *quantity;
  report.Add(fields.At("quantityExpression"),
             "quantity " + JsonString(expression) +
                 " is not a sum, difference, product or quotient of "
                 "integers that gives at least 1");
  return 1;
}

// The names that a query stands for: its entry, or the definition of that name.
void ResolveQuery(const WorldData& data, const Json& part, IssueReport& report,
                  PlatformRecipeSlot& slot) {
  if (const auto query = data.queries.find(slot.query); query != data.queries.end()) {
    // Iterating over a single string gives that string.
    for (const Json& name : *query) slot.accepted.insert(name.get<std::string>());
  } else if (data.FindDefinition(slot.query) != nullptr) {
    slot.accepted.insert(slot.query);
  } else {
    report.Add(part, JsonString(slot.query) + " is neither a query nor a loot name");
  }
}

PlatformRecipeSlot ReadSlot(const Json& value, IssueReport& report, const WorldData& data) {
  PlatformRecipeSlot slot;
  FieldReader fields(value, report);
  slot.slotNumber = fields.Integer("slotNumber", 0, kMax32);
  slot.query = fields.String("query");
  slot.quantity = ReadQuantity(fields, report, slot.quantityExpression);
  fields.Finish();
  ResolveQuery(data, fields.At("query"), report, slot);
  return slot;
}

PlatformRecipeOutput ReadOutput(const Json& value, IssueReport& report, const WorldData& data) {
  PlatformRecipeOutput output;
  FieldReader fields(value, report);
  output.lootName = fields.String("lootName");
  output.quantity = ReadQuantity(fields, report, output.quantityExpression);
  output.probability = fields.NumberOr("probability", 1, 0, 1);
  output.allowDuplicates = fields.BoolOr("allowDuplicates", true);
  fields.Finish();
  if (data.FindDefinition(output.lootName) == nullptr && !data.odds.contains(output.lootName)) {
    report.Add(fields.At("lootName"),
               JsonString(output.lootName) + " is neither a loot name nor an odds table");
  }
  return output;
}

const Json& ReadStringMap(FieldReader& fields, IssueReport& report, std::string_view name) {
  const Json& strings = fields.ObjectOr(name);
  for (const auto& [key, value] : strings.items()) {
    if (!value.is_string()) report.Add(value, JsonString(key) + " must be a string");
  }
  return strings;
}

Json ReadDescriptions(FieldReader& metadata, IssueReport& report, std::string_view name) {
  Json descriptions = Json::array();
  for (const Json& value : metadata.ListOr(name)) {
    FieldReader fields(value, report);
    descriptions.push_back(
        Json{{"lootName", fields.String("lootName")},
             {"childLootTableNames", fields.StringsOr("childLootTableNames")},
             {"localizationMap", ReadStringMap(fields, report, "localizationMap")},
             {"localizationLongDescriptionMap",
              ReadStringMap(fields, report, "localizationLongDescriptionMap")}});
    fields.Finish();
  }
  return descriptions;
}

Json ReadMetadata(FieldReader& recipe, IssueReport& report) {
  FieldReader fields(recipe.ObjectOr("metadata"), report);
  Json metadata = {
      {"guaranteedDescriptions", ReadDescriptions(fields, report, "guaranteedDescriptions")},
      {"bonusDescriptions", ReadDescriptions(fields, report, "bonusDescriptions")},
      {"tooltipsDisabled", fields.BoolOr("tooltipsDisabled", false)}};
  fields.Finish();
  return metadata;
}

PlatformRecipe ReadRecipe(FieldReader& fields, IssueReport& report, const WorldData& data) {
  PlatformRecipe recipe;
  recipe.recipeName = fields.String("recipeName");
  recipe.type = fields.String("type");
  recipe.displayCategories = fields.StringOr("displayCategories", "");
  recipe.crafterName = fields.StringOr("crafterName", "");
  for (const Json& slot : fields.ListOr("slots")) {
    recipe.slots.push_back(ReadSlot(slot, report, data));
  }
  for (const Json& output : fields.ListOr("outputs")) {
    recipe.outputs.push_back(ReadOutput(output, report, data));
  }
  recipe.metadata = ReadMetadata(fields, report);
  fields.Finish();
  if (recipe.slots.empty()) report.Add(fields.At("slots"), "a recipe needs at least one slot");
  std::sort(recipe.slots.begin(), recipe.slots.end(),
            [](const auto& a, const auto& b) { return a.slotNumber < b.slotNumber; });
  const auto twice =
      std::adjacent_find(recipe.slots.begin(), recipe.slots.end(),
                         [](const auto& a, const auto& b) { return a.slotNumber == b.slotNumber; });
  if (twice != recipe.slots.end()) {
    report.Add(fields.At("slots"), "duplicate slot number " + std::to_string(twice->slotNumber));
  }
  return recipe;
}

}  // namespace

void ReadDefinitions(FieldReader& world, IssueReport& report, WorldData& data) {
  const Json& list = world.ListOr("definitions");
  for (const Json& value : list) {
    FieldReader fields(value, report);
    LootDefinition definition = ReadDefinition(fields);
    fields.Finish();
    const std::string fault = DefinitionFault(definition, data.collections);
    if (!fault.empty()) report.Add(value, fault);
    if (!data.definitionIndex.emplace(definition.lootName, data.definitions.size()).second) {
      report.Add(fields.At("lootName"), "duplicate loot name " + JsonString(definition.lootName));
    }
    data.definitions.push_back(std::move(definition));
    if (report.failed()) return;
  }
  for (size_t i = 0; i < list.size(); ++i) {
    const std::string& upgrade = data.definitions[i].upgradeLootName;
    if (!upgrade.empty() && data.FindDefinition(upgrade) == nullptr) {
      report.Add(list[i]["upgradeLootName"], "unknown loot name " + JsonString(upgrade));
    }
  }
}

void ReadQueries(FieldReader& world, IssueReport& report, WorldData& data) {
  data.queries = world.ObjectOr("queries");
  for (const Json& query : world.ObjectOr("queries")) {
    if (!query.is_string() && !query.is_array()) {
      report.Add(query, "a query must be a loot name or a list of them");
      return;
    }
    for (const Json& name : query) {  // of a single string: that string
      const auto* text = name.get_ptr<const std::string*>();
      if (text != nullptr && IsLoot(data, *text)) continue;
      report.Add(name, "unknown loot name " + WriteJson(name));
    }
  }
}

void ReadOdds(FieldReader& world, IssueReport& report, WorldData& data) {
  const Json& odds = world.ObjectOr("odds");
  FieldReader tables(odds, report);
  for (const auto& [name, table] : odds.items()) {
    if (data.FindDefinition(name) != nullptr) {
      report.AddToName(table, JsonString(name) + " is a loot name already");
    }
    std::vector<OddsEntry>& entries = data.odds[name];
    for (const Json& value : tables.ListOr(name)) {
      FieldReader fields(value, report);
      OddsEntry entry;
      entry.lootName = fields.String("lootName");
      entry.weight = fields.IntegerOr("weight", 1, 1, 1'000'000);
      entry.quantity = fields.IntegerOr("quantity", 1, 1, 1'000'000);
      fields.Finish();
      if (data.FindDefinition(entry.lootName) == nullptr) {
        report.Add(fields.At("lootName"), "unknown loot name " + JsonString(entry.lootName));
      }
      entries.push_back(std::move(entry));
    }
    if (entries.empty()) report.AddToName(table, "an odds table needs at least one entry");
  }
}

void ReadRecipes(FieldReader& world, IssueReport& report, WorldData& data) {
  for (const Json& value : world.ListOr("recipes")) {
    FieldReader fields(value, report);
    PlatformRecipe recipe = ReadRecipe(fields, report, data);
    if (!data.recipeIndex.emplace(recipe.recipeName, data.recipes.size()).second) {
      report.Add(fields.At("recipeName"), "duplicate recipe name " + JsonString(recipe.recipeName));
    }
    data.recipes.push_back(std::move(recipe));
    if (report.failed()) return;
  }
}

}  // namespace Kest::Host
