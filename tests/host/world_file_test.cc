#include <algorithm>
#include <set>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

// In `to`, "@" marks where the failure is.
TEST(WorldFile, ABrokenFileIsAnsweredWithThePlaceAndTheReason) {
  const struct {
    const char *why, *from, *to, *reason;
  } kCases[] = {
      {"syntax", "\"Pond\",\n  \"champions\"", "\"Pond\"\n  @\"champions\"",
       "Missing a comma or '}' after an object member."},
      {"unknown member deep inside", "\"weight\": 3", "@\"wait\": 3", "unknown member \"wait\""},
      {"missing member", R"({"lootName": "CHEST_reed", "type": "CHEST"})",
       R"(@{"lootName": "CHEST_reed"})", "member \"type\" is missing"},
      {"empty text", "\"Pond\"", "@\"\"", "\"name\" must not be empty"},
      {"fraction for a number", "\"storeItemId\": 2}", "\"storeItemId\": @2.0}",
       "\"storeItemId\" must be a whole number, not a number"},
      {"number for a flag", "\"owned\": true", "\"owned\": @1",
       "\"owned\" must be true or false, not a whole number"},
      {"number out of range", "\"probability\": 0.25", "\"probability\": @1.5",
       "\"probability\" must lie between 0 and 1"},
      {"count beyond 64 bits", "\"count\": 4", "\"count\": @18446744073709551615",
       "\"count\" must lie between 1 and 2147483647"},
      {"member the collection has not", "\"name\": \"Reed\"",
       "\"name\": \"Reed\", @\"rented\": true", "unknown member \"rented\""},
      {"id twice", "\"id\": 2, \"name\"", "\"id\": @1, \"name\"",
       "id 1 stands twice in \"champions\""},
      {"skin without champion", "\"id\": 2001", "\"id\": @9001",
       "no champion has the id 9 of skin 9001"},
      {"loot name twice", "\"CURRENCY_champion\"", "@\"CHEST_reed\"",
       "loot name \"CHEST_reed\" is defined twice"},
      {"loot name with a dash", "{\"lootName\": \"CHEST_reed\"", "@{\"lootName\": \"CHEST-reed\"",
       "loot name \"CHEST-reed\" must not hold \"-\", \"/\", \"?\" or \"#\": loot ids are cut "
       "there"},
      {"store id of nothing", R"({"lootName": "SKIN_1001", "type": "SKIN", "storeItemId": 1001})",
       R"(@{"lootName": "SKIN_1001", "type": "SKIN", "storeItemId": 77})",
       "storeItemId 77 is not among the skins"},
      {"unknown upgrade", "\"type\": \"MATERIAL\"",
       "\"type\": \"MATERIAL\", \"upgradeLootName\": @\"X\"", "unknown loot name \"X\""},
      {"unknown loot in a query", "[\"CHAMPION_RENTAL_1\"", "[@\"CHAMPION_RENTAL_9\"",
       "unknown loot name \"CHAMPION_RENTAL_9\""},
      {"query of a wrong kind", "\"CHAMPION_TOKEN_star-1\"", "@3",
       "a query holds a loot name or a list of them"},
      {"empty odds", "\"odds\": {", "\"odds\": {@\"TABLE_none\": [], ",
       "an odds table needs at least one entry"},
      {"odds named like loot", "\"odds\": {",
       "\"odds\": {@\"EMOTE_7\": [{\"lootName\": \"EMOTE_7\"}], ",
       "\"EMOTE_7\" is a loot name already"},
      {"unknown loot in an output", "{\"lootName\": \"TABLE_any\"}",
       "{\"lootName\": @\"TABLE_all\"}", "\"TABLE_all\" is neither a loot name nor an odds table"},
      {"unknown loot in a slot", "\"query\": \"MATERIAL_key\"", "\"query\": @\"MATERIAL_keys\"",
       "\"MATERIAL_keys\" is neither a query nor a loot name"},
      {"quantity that is no number", "\"2 * 5\"", "@\"2 x 5\"",
       "quantity \"2 x 5\" is not a sum, difference, product or quotient of whole numbers that "
       "gives at least 1"},
      {"slot number twice", "[{\"slotNumber\": 1, \"query\": \"MAT",
       "@[{\"slotNumber\": 0, \"query\": \"MAT", "slot number 0 stands twice"},
      {"recipe name twice", "\"recipeName\": \"MIX\"", "\"recipeName\": @\"REROLL\"",
       "recipe name \"REROLL\" is defined twice"},
      {"item twice", "{\"lootName\": \"BOOST_wind\"}", "@{\"lootName\": \"SKIN_2001\"}",
       "\"SKIN_2001\" stands twice in the inventory"},
      {"token without champion", R"({"lootName": "CHAMPION_TOKEN_star", "refId": "1")",
       R"(@{"lootName": "CHAMPION_TOKEN_star", "refId": "Heron")",
       "a champion token needs a champion's id as \"refId\""},
      {"latency of an unknown method", "{\"redeemPlayerLoot\"", "{@\"redeem\"",
       "unknown member \"redeem\""},
      {"unknown chest", "\"newPlayerChest\": \"CHEST_reed\"", "\"newPlayerChest\": @\"CHEST\"",
       "unknown loot name \"CHEST\""},
      {"message name twice", "\"messages\": [{\"name\": \"grant\"",
       "\"messages\": [{\"name\": \"grant\"}, {\"name\": @\"grant\"",
       "message \"grant\" stands twice"},
      {"rarity of the game data", "\"name\": \"Pond\",",
       "\"name\": \"Pond\", \"lootData\": {\"LootItems\": [{\"id\": \"a\", \"rarity\": "
       "@\"Rare\"}]},",
       "\"Rare\" is none of \"Default\" \"Epic\" \"Legendary\" \"Mythic\" \"Ultimate\""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    std::string text = ChangedWorld(c.from, c.to);
    const size_t mark = text.find('@');
    ASSERT_NE(mark, std::string::npos);
    text.erase(mark, 1);
    const std::string before = text.substr(0, mark);
    const std::string line = std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
    const std::string column = std::to_string(mark - (before.rfind('\n') + 1) + 1);
    const auto world = World::Load(text, "pond.json", 1);
    ASSERT_FALSE(world);
    EXPECT_EQ(world.GetFailure().text, "pond.json:" + line + ":" + column + ": " + c.reason);
  }
}

using SampleWorld = WorldTest;

TEST_F(SampleWorld, HoldsLootOfEveryTypeAndRecipesOfEveryKindThatCanBeReadAbout) {
  Load(World::SampleText(), 7);
  const JsonValue file = Parse(World::SampleText());
  const auto list = [](const JsonValue& owner, std::string_view name) -> const JsonValue::Array& {
    return *owner.Find(name)->AsArray();
  };
  std::set<std::string> notHeld = {
      "CHEST",          "CHAMPION", "CHAMPION_RENTAL", "SKIN",     "SKIN_RENTAL",   "CHROMA",
      "CHROMA_RENTAL",  "WARDSKIN", "WARDSKIN_RENTAL", "EMOTE",    "EMOTE_RENTAL",  "SUMMONERICON",
      "TOURNAMENTLOGO", "BOOST",    "MATERIAL",        "CURRENCY", "CHAMPION_TOKEN"};
  const std::set<std::string> known = notHeld;
  std::set<std::string> unknown;
  std::set<std::string> held;
  for (const auto& [id, count] : Inventory()) held.insert(id.substr(0, id.find('-')));
  for (const JsonValue& definition : list(file, "definitions")) {
    const std::string& type = *definition.Find("type")->AsText();
    if (!known.contains(type)) unknown.insert(type);
    if (held.contains(*definition.Find("lootName")->AsText())) notHeld.erase(type);
  }
  EXPECT_EQ(notHeld, std::set<std::string>());
  EXPECT_EQ(unknown.size(), 1u);

  std::set<std::string> described;
  for (const JsonValue& recipe : list(*file.Find("lootData"), "LootRecipes")) {
    described.insert(*recipe.Find("id")->AsText());
  }
  std::set<std::string> kinds;
  for (const JsonValue& recipe : list(file, "recipes")) {
    EXPECT_TRUE(described.contains(*recipe.Find("recipeName")->AsText())) << WriteJson(recipe);
    kinds.insert(*recipe.Find("type")->AsText());
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"OPEN", "DISENCHANT", "UPGRADE", "REROLL", "FORGE",
                                          "TOKENSHARDUPGRADE", "TOKENESSENCEUPGRADE"}));
}

}  // namespace
}  // namespace Kest::Host
