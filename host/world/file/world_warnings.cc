// What a world file may say but probably does not mean.
#include <algorithm>
#include <set>
#include <span>
#include <string>

#include "host/json/json_text.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view kLootTypes[] = {
    "CHEST",          "CHAMPION", "CHAMPION_RENTAL", "SKIN",     "SKIN_RENTAL",   "CHROMA",
    "CHROMA_RENTAL",  "WARDSKIN", "WARDSKIN_RENTAL", "EMOTE",    "EMOTE_RENTAL",  "SUMMONERICON",
    "TOURNAMENTLOGO", "BOOST",    "MATERIAL",        "CURRENCY", "CHAMPION_TOKEN"};
constexpr std::string_view kKnownRarities[] = {"DEFAULT", "EPIC", "LEGENDARY", "MYTHIC",
                                               "ULTIMATE"};
constexpr std::string_view kRecipeTypes[] = {
    "OPEN", "DISENCHANT", "UPGRADE", "REROLL", "FORGE", "TOKENSHARDUPGRADE", "TOKENESSENCEUPGRADE"};

std::string TextOf(const Json& object, const char* name) {
  const auto found = object.find(name);
  const auto* text = found == object.end() ? nullptr : found->get_ptr<const std::string*>();
  return text == nullptr ? "" : *text;
}

void WarnUnlessKnown(FieldReader& world, const Json& object, const char* name,
                     std::string_view what, Words words) {
  const auto found = object.find(name);
  if (found == object.end()) return;
  const std::string word = TextOf(object, name);
  if (std::find(words.begin(), words.end(), word) != words.end()) return;
  std::string message = "unknown " + std::string(what) + " " + JsonString(word) + "; known are";
  for (const std::string_view known : words) message.append(" ").append(known);
  world.WarnPart(*found, message);
}

void WarnOfDefinitions(FieldReader& world) {
  for (const Json& definition : world.ListOr("definitions")) {
    WarnUnlessKnown(world, definition, "type", "loot type", kLootTypes);
    WarnUnlessKnown(world, definition, "rarity", "rarity", kKnownRarities);
    const auto collection = CollectionOfLootType(TextOf(definition, "type"));
    if (collection && definition.find("storeItemId") == definition.end()) {
      world.WarnPart(definition, TextOf(definition, "lootName") +
                                     " has no \"storeItemId\": it is " + "none of the " +
                                     std::string(CollectionName(*collection)));
    }
  }
}

// The tables that outputs of recipes name; a table that is only described gives nothing.
void WarnOfRecipesAndTables(FieldReader& world) {
  std::set<std::string> used;
  for (const Json& recipe : world.ListOr("recipes")) {
    WarnUnlessKnown(world, recipe, "type", "recipe type", kRecipeTypes);
    const auto outputs = recipe.find("outputs");
    if (outputs == recipe.end()) continue;
    for (const Json& output : *outputs) used.insert(TextOf(output, "lootName"));
  }
  for (const auto& [name, table] : world.ObjectOr("odds").items()) {
    if (!used.contains(name))
      world.WarnName(table, "no recipe draws from the table " + JsonString(name));
  }
}

// The definition that a text is of: its id is a loot id.
bool IsLootId(const WorldData& data, const std::string& id) {
  return data.FindDefinition(id.substr(0, id.find('-'))) != nullptr;
}

void WarnOfTexts(FieldReader& world, const WorldData& data) {
  const Json& texts = world.ObjectOr("lootData");
  const auto warn = [&](const char* list, std::string_view what, const auto& isKnown) {
    const auto found = texts.find(list);
    if (found == texts.end()) return;
    for (const Json& text : *found) {
      const std::string id = TextOf(text, "id");
      if (isKnown(id)) continue;
      world.WarnPart(text["id"],
                     "a text of " + JsonString(id) + ", but there is no such " + std::string(what));
    }
  };
  warn("LootItems", "loot", [&](const std::string& id) { return IsLootId(data, id); });
  warn("LootRecipes", "recipe",
       [&](const std::string& id) { return data.FindRecipe(id) != nullptr; });
  warn("LootTables", "odds table", [&](const std::string& id) { return data.odds.contains(id); });
}

}  // namespace

void WarnOfWorld(FieldReader& world, const WorldData& data) {
  WarnOfDefinitions(world);
  WarnOfRecipesAndTables(world);
  WarnOfTexts(world, data);
}

}  // namespace Kest::Host
