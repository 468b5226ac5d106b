// The loot of a world file: definitions, queries, odds tables, recipes.
#include <algorithm>
#include <string>

#include "host/world/file/quantity_expression.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

constexpr int64_t kMin32 = FieldReader::kMin32;
constexpr int64_t kMax32 = FieldReader::kMax32;
constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();

LootDefinition ReadDefinition(FieldReader& fields) {
  LootDefinition definition;
  definition.lootName = fields.Text("lootName");
  definition.asset = fields.TextOr("asset", "");
  definition.type = fields.Text("type");
  definition.rarity = fields.TextOr("rarity", "DEFAULT");
  definition.value = fields.WholeOr("value", 0, kMin32, kMax32);
  definition.storeItemId = fields.WholeOr("storeItemId", -1, -1, kMax32);
  definition.upgradeLootName = fields.TextOr("upgradeLootName", "");
  definition.expiryTime = fields.WholeOr("expiryTime", -1, -1, kMax64);
  definition.tags = fields.TextOr("tags", "");
  definition.displayCategories = fields.TextOr("displayCategories", "");
  definition.rentalSeconds = fields.WholeOr("rentalSeconds", 0, 0, kMax64);
  definition.rentalGames = fields.WholeOr("rentalGames", 0, 0, kMax32);
  return definition;
}

// What can go wrong with a definition by itself.
std::string DefinitionFault(const LootDefinition& definition, const Collections& collections) {
  if (definition.lootName.find_first_of("-/?#") != std::string::npos) {
    return "loot name " + QuoteJson(definition.lootName) +
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
  expression = fields.TextOr("quantityExpression", "1");
  const auto quantity = EvaluateQuantity(expression);
  if (quantity && *quantity >= 1 && *quantity <= kMax32) return *quantity;
  report.Add(fields.Place("quantityExpression"),
             "quantity " + QuoteJson(expression) +
                 " is not a sum, difference, product or quotient of "
                 "whole numbers that gives at least 1");
  return 1;
}

// The names that a query stands for: its entry, or the definition of that name.
void ResolveQuery(const WorldData& data, TextPosition place, IssueReport& report,
                  RecipeSlot& slot) {
  for (const JsonValue::Member& query : data.queries) {
    if (query.name != slot.query) continue;
    if (const std::string* single = query.value.AsText()) slot.accepted.insert(*single);
    if (const JsonValue::Array* list = query.value.AsArray()) {
      for (const JsonValue& name : *list) slot.accepted.insert(*name.AsText());
    }
    return;
  }
  if (data.FindDefinition(slot.query) != nullptr) {
    slot.accepted.insert(slot.query);
  } else {
    report.Add(place, QuoteJson(slot.query) + " is neither a query nor a loot name");
  }
}

RecipeSlot ReadSlot(const JsonValue& value, IssueReport& report, const WorldData& data) {
  RecipeSlot slot;
  FieldReader fields(value, report);
  slot.slotNumber = fields.Whole("slotNumber", 0, kMax32);
  slot.query = fields.Text("query");
  slot.quantity = ReadQuantity(fields, report, slot.quantityExpression);
  fields.Finish();
  ResolveQuery(data, fields.Place("query"), report, slot);
  return slot;
}

RecipeOutput ReadOutput(const JsonValue& value, IssueReport& report, const WorldData& data) {
  RecipeOutput output;
  FieldReader fields(value, report);
  output.lootName = fields.Text("lootName");
  output.quantity = ReadQuantity(fields, report, output.quantityExpression);
  output.probability = fields.NumberOr("probability", 1, 0, 1);
  output.allowDuplicates = fields.FlagOr("allowDuplicates", true);
  fields.Finish();
  if (data.FindDefinition(output.lootName) == nullptr && !data.odds.contains(output.lootName)) {
    report.Add(fields.Place("lootName"),
               QuoteJson(output.lootName) + " is neither a loot name nor an odds table");
  }
  return output;
}

JsonValue ReadTexts(FieldReader& fields, IssueReport& report, std::string_view name) {
  JsonValue::Object texts;
  const JsonValue* value = fields.Find(name);
  if (value == nullptr) return texts;
  FieldReader members(*value, report);
  if (const JsonValue::Object* object = value->AsObject()) {
    for (const JsonValue::Member& member : *object) {
      texts.push_back({member.name, members.TextOr(member.name, "")});
    }
  }
  return texts;
}

JsonValue ToJson(const std::vector<std::string>& texts) {
  return JsonValue::Array(texts.begin(), texts.end());
}

JsonValue ReadDescriptions(FieldReader& metadata, IssueReport& report, std::string_view name) {
  JsonValue::Array descriptions;
  for (const JsonValue& value : metadata.ListOr(name)) {
    FieldReader fields(value, report);
    descriptions.push_back(
        JsonValue::Object{{"lootName", fields.Text("lootName")},
                          {"childLootTableNames", ToJson(fields.TextsOr("childLootTableNames"))},
                          {"localizationMap", ReadTexts(fields, report, "localizationMap")},
                          {"localizationLongDescriptionMap",
                           ReadTexts(fields, report, "localizationLongDescriptionMap")}});
    fields.Finish();
  }
  return descriptions;
}

JsonValue ReadMetadata(FieldReader& recipe, IssueReport& report) {
  static const JsonValue kNone{JsonValue::Object()};
  const JsonValue* value = recipe.Find("metadata");
  FieldReader fields(value == nullptr ? kNone : *value, report);
  JsonValue metadata = JsonValue::Object{
      {"guaranteedDescriptions", ReadDescriptions(fields, report, "guaranteedDescriptions")},
      {"bonusDescriptions", ReadDescriptions(fields, report, "bonusDescriptions")},
      {"tooltipsDisabled", fields.FlagOr("tooltipsDisabled", false)}};
  fields.Finish();
  return metadata;
}

Recipe ReadRecipe(FieldReader& fields, IssueReport& report, const WorldData& data) {
  Recipe recipe;
  recipe.recipeName = fields.Text("recipeName");
  recipe.type = fields.Text("type");
  recipe.displayCategories = fields.TextOr("displayCategories", "");
  recipe.crafterName = fields.TextOr("crafterName", "");
  for (const JsonValue& slot : fields.ListOr("slots")) {
    recipe.slots.push_back(ReadSlot(slot, report, data));
  }
  for (const JsonValue& output : fields.ListOr("outputs")) {
    recipe.outputs.push_back(ReadOutput(output, report, data));
  }
  recipe.metadata = ReadMetadata(fields, report);
  fields.Finish();
  if (recipe.slots.empty()) report.Add(fields.Place("slots"), "a recipe needs at least one slot");
  std::sort(recipe.slots.begin(), recipe.slots.end(),
            [](const auto& a, const auto& b) { return a.slotNumber < b.slotNumber; });
  const auto twice =
      std::adjacent_find(recipe.slots.begin(), recipe.slots.end(),
                         [](const auto& a, const auto& b) { return a.slotNumber == b.slotNumber; });
  if (twice != recipe.slots.end()) {
    report.Add(fields.Place("slots"),
               "slot number " + std::to_string(twice->slotNumber) + " stands twice");
  }
  return recipe;
}

}  // namespace

void ReadDefinitions(FieldReader& world, IssueReport& report, WorldData& data) {
  const JsonValue::Array& list = world.ListOr("definitions");
  for (const JsonValue& value : list) {
    FieldReader fields(value, report);
    LootDefinition definition = ReadDefinition(fields);
    fields.Finish();
    const std::string fault = DefinitionFault(definition, data.collections);
    if (!fault.empty()) report.Add(value.position(), fault);
    if (!data.definitionIndex.emplace(definition.lootName, data.definitions.size()).second) {
      report.Add(fields.Place("lootName"),
                 "loot name " + QuoteJson(definition.lootName) + " is defined twice");
    }
    data.definitions.push_back(std::move(definition));
    if (report.failed()) return;
  }
  for (size_t i = 0; i < list.size(); ++i) {
    const std::string& upgrade = data.definitions[i].upgradeLootName;
    if (!upgrade.empty() && data.FindDefinition(upgrade) == nullptr) {
      report.Add(list[i].Find("upgradeLootName")->position(),
                 "unknown loot name " + QuoteJson(upgrade));
    }
  }
}

void ReadQueries(FieldReader& world, IssueReport& report, WorldData& data) {
  const JsonValue* queries = world.Find("queries");
  if (queries == nullptr) return;
  FieldReader fields(*queries, report);
  if (report.failed()) return;
  for (const JsonValue::Member& query : *queries->AsObject()) {
    const bool isSingle = query.value.AsText() != nullptr;
    const JsonValue single = JsonValue::Array{query.value};
    const JsonValue& list = isSingle ? single : query.value;
    if (list.AsArray() == nullptr) {
      report.Add(query.value.position(), "a query holds a loot name or a list of them");
      return;
    }
    for (const JsonValue& name : *list.AsArray()) {
      if (name.AsText() != nullptr && IsLoot(data, *name.AsText())) continue;
      report.Add(name.position(), "unknown loot name " + WriteJson(name));
    }
    data.queries.push_back(query);
  }
}

void ReadOdds(FieldReader& world, IssueReport& report, WorldData& data) {
  const JsonValue* odds = world.Find("odds");
  if (odds == nullptr) return;
  FieldReader tables(*odds, report);
  if (report.failed()) return;
  for (const JsonValue::Member& table : *odds->AsObject()) {
    if (data.FindDefinition(table.name) != nullptr) {
      report.Add(table.position, QuoteJson(table.name) + " is a loot name already");
    }
    std::vector<OddsEntry>& entries = data.odds[table.name];
    for (const JsonValue& value : tables.ListOr(table.name)) {
      FieldReader fields(value, report);
      OddsEntry entry;
      entry.lootName = fields.Text("lootName");
      entry.weight = fields.WholeOr("weight", 1, 1, 1'000'000);
      entry.quantity = fields.WholeOr("quantity", 1, 1, 1'000'000);
      fields.Finish();
      if (data.FindDefinition(entry.lootName) == nullptr) {
        report.Add(fields.Place("lootName"), "unknown loot name " + QuoteJson(entry.lootName));
      }
      entries.push_back(std::move(entry));
    }
    if (entries.empty()) report.Add(table.position, "an odds table needs at least one entry");
  }
}

void ReadRecipes(FieldReader& world, IssueReport& report, WorldData& data) {
  for (const JsonValue& value : world.ListOr("recipes")) {
    FieldReader fields(value, report);
    Recipe recipe = ReadRecipe(fields, report, data);
    if (!data.recipeIndex.emplace(recipe.recipeName, data.recipes.size()).second) {
      report.Add(fields.Place("recipeName"),
                 "recipe name " + QuoteJson(recipe.recipeName) + " is defined twice");
    }
    data.recipes.push_back(std::move(recipe));
    if (report.failed()) return;
  }
}

}  // namespace Kest::Host
