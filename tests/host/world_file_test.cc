#include <algorithm>
#include <set>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

// In `to`, "@" marks where the failure is.
TEST(WorldFile, ABrokenFileIsRefusedWithThePlaceAndTheReason) {
  const struct {
    const char *from, *to, *reason;
  } kCases[] = {
      {"\"weight\": 3", "@\"wait\": 3", "unknown member \"wait\""},
      {R"({"lootName": "CHEST_reed", "type": "CHEST"})", R"(@{"lootName": "CHEST_reed"})",
       "member \"type\" is missing"},
      {"\"Pond\"", "@\"\"", "\"name\" must not be empty"},
      {"\"Pond\",\n  \"champions\"", "\"Pond\"\n  @\"champions\"",
       "did not find expected ',' or '}'"},
      {"{\"id\": 7, \"name\": \"Splash\"}", "@[]", "must be an object, found a list"},
      {"\"storeItemId\": 2}", "\"storeItemId\": @2.0}",
       "\"storeItemId\" must be an integer, found 2.0"},
      {"\"owned\": true", "\"owned\": @1", "\"owned\" must be true or false, found 1"},
      {"\"refId\": \"1\"", "\"refId\": @1", "\"refId\" must be a string, found 1"},
      {"\"summonerId\": 70", "\"summonerId\": @-1",
       "\"summonerId\" must be an integer from 0, found -1"},
      {"\"probability\": 0.25", "\"probability\": @1.5",
       "\"probability\" must be between 0.0 and 1.0, found 1.5"},
      {"\"count\": 4", "\"count\": @18446744073709551615",
       "\"count\" must be between 1 and 2147483647, found 18446744073709551615"},
      {"\"name\": \"Reed\"", "\"name\": \"Reed\", @\"rented\": true", "unknown member \"rented\""},
      {"\"id\": 2, \"name\"", "\"id\": @1, \"name\"", "duplicate id 1 in \"champions\""},
      {"\"id\": 2001", "\"id\": @9001", "no champion has the id 9 of skin 9001"},
      {"\"CURRENCY_champion\"", "@\"CHEST_reed\"", "duplicate loot name \"CHEST_reed\""},
      {"{\"lootName\": \"CHEST_reed\"", "@{\"lootName\": \"CHEST-reed\"",
       "loot name \"CHEST-reed\" must not hold \"-\", \"/\", \"?\" or \"#\": loot ids are cut "
       "there"},
      {R"({"lootName": "SKIN_1001", "type": "SKIN", "storeItemId": 1001})",
       R"(@{"lootName": "SKIN_1001", "type": "SKIN", "storeItemId": 77})",
       "storeItemId 77 is not among the skins"},
      {"\"type\": \"MATERIAL\"", "\"type\": \"MATERIAL\", \"upgradeLootName\": @\"X\"",
       "unknown loot name \"X\""},
      {"[\"CHAMPION_RENTAL_1\"", "[@\"CHAMPION_RENTAL_9\"",
       "unknown loot name \"CHAMPION_RENTAL_9\""},
      {"\"CHAMPION_TOKEN_star-1\"", "@3", "a query must be a loot name or a list of them"},
      {"\"odds\": {", "\"odds\": {@\"TABLE_none\": [], ", "an odds table needs at least one entry"},
      {"\"odds\": {", "\"odds\": {@\"EMOTE_7\": [{\"lootName\": \"EMOTE_7\"}], ",
       "\"EMOTE_7\" is a loot name already"},
      {"[{\"lootName\": \"SKIN_1001\"", "[{\"lootName\": @\"SKIN_9\"",
       "unknown loot name \"SKIN_9\""},
      {"{\"lootName\": \"TABLE_any\"}", "{\"lootName\": @\"TABLE_all\"}",
       "\"TABLE_all\" is neither a loot name nor an odds table"},
      {"\"query\": \"MATERIAL_key\"", "\"query\": @\"MATERIAL_keys\"",
       "\"MATERIAL_keys\" is neither a query nor a loot name"},
      {"\"2 * 5\"", "@\"2 x 5\"",
       "quantity \"2 x 5\" is not a sum, difference, product or quotient of integers that gives at "
       "least 1"},
      {"[{\"slotNumber\": 1, \"query\": \"MAT", "@[{\"slotNumber\": 0, \"query\": \"MAT",
       "duplicate slot number 0"},
      {"\"recipeName\": \"MIX\"", "\"recipeName\": @\"REROLL\"",
       "duplicate recipe name \"REROLL\""},
      {"{\"lootName\": \"BOOST_wind\"}", "@{\"lootName\": \"SKIN_2001\"}",
       "duplicate item \"SKIN_2001\""},
      {R"({"lootName": "CHAMPION_TOKEN_star", "refId": "1")",
       R"(@{"lootName": "CHAMPION_TOKEN_star", "refId": "Heron")",
       "a champion token needs a champion's id as \"refId\""},
      {"{\"redeemPlayerLoot\"", "{@\"redeem\"", "unknown member \"redeem\""},
      {"\"newPlayerChest\": \"CHEST_reed\"", "\"newPlayerChest\": @\"CHEST\"",
       "unknown loot name \"CHEST\""},
      {"\"messages\": [{\"name\": \"grant\"",
       "\"messages\": [{\"name\": \"grant\"}, {\"name\": @\"grant\"",
       "duplicate message \"grant\""},
      {"{\"lootName\": \"CHEST_reed\", \"count\": 4}",
       "@{\"lootName\": \"CHEST_reed\", \"refId\": \"a/b\"}",
       "a reference id is at most 64 bytes long and free of \"/\", \"?\" and \"#\""},
      {"\"Pond\",",
       "\"Pond\", \"lootData\": {\"LootItems\": [{\"id\": \"a\", \"rarity\": @\"Rare\"}]},",
       "\"Rare\" is none of \"Default\" \"Epic\" \"Legendary\" \"Mythic\" \"Ultimate\""},
  };
  for (const auto& c : kCases) {
    std::string json = ChangedWorld(c.from, c.to);
    for (const std::string& text : {json, "# In YAML.\n" + json}) {
      const size_t mark = text.find('@');
      const auto line = std::count(text.begin(), text.begin() + static_cast<long>(mark), '\n') + 1;
      const size_t column = mark - (text.rfind('\n', mark) + 1) + 1;
      const auto world = World::Load(std::string(text).erase(mark, 1), "pond", 1);
      ASSERT_FALSE(world) << c.reason;
      EXPECT_EQ(world.GetFailure().text,
                "pond:" + std::to_string(line) + ":" + std::to_string(column) + ": " + c.reason);
    }
  }
}

TEST(WorldFile, YamlSaysTheSameAsJson) {
  const auto load = [](std::string_view text) {
    auto world = World::Load(text, "pond", 1);
    return world ? world.GetValue()->Control("GET", "/world", "").body : world.GetFailure().text;
  };
  EXPECT_EQ(load(R"(# A world of one thing.
name: Pond  # "yes" and "1_0" are strings
definitions:
  - {lootName: yes, type: 'MATERIAL', value: 0x10}
  - lootName: 1_0
    type: MATERIAL
player:
  inventory: [{lootName: yes, count: 2}]
)"),
            load(R"({"name": "Pond", "definitions": [
    {"lootName": "yes", "type": "MATERIAL", "value": 16}, {"lootName": "1_0", "type": "MATERIAL"}],
    "player": {"inventory": [{"lootName": "yes", "count": 2}]}})"));
}

using SampleWorld = WorldTest;

TEST_F(SampleWorld, HoldsLootOfEveryTypeAndRecipesOfEveryKind) {
  Start(World::SampleText(), 7);
  const Json file = Parse(World::SampleText());
  std::set<std::string> held;
  for (const auto& [id, count] : Inventory()) held.insert(id.substr(0, id.find('-')));
  std::set<std::string> types;
  for (const Json& definition : file["definitions"]) {
    if (held.contains(definition["lootName"].get<std::string>())) types.insert(definition["type"]);
  }
  for (const char* type :
       {"CHEST", "CHAMPION", "CHAMPION_RENTAL", "SKIN", "SKIN_RENTAL", "CHROMA", "CHROMA_RENTAL",
        "WARDSKIN", "WARDSKIN_RENTAL", "EMOTE", "EMOTE_RENTAL", "SUMMONERICON", "TOURNAMENTLOGO",
        "BOOST", "MATERIAL", "CURRENCY", "CHAMPION_TOKEN"}) {
    EXPECT_TRUE(types.contains(type)) << type;
  }
  std::set<std::string> described;
  for (const Json& recipe : file["lootData"]["LootRecipes"]) described.insert(recipe["id"]);
  std::set<std::string> kinds;
  for (const Json& recipe : file["recipes"]) {
    EXPECT_TRUE(described.contains(recipe["recipeName"].get<std::string>())) << recipe;
    kinds.insert(recipe["type"]);
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"OPEN", "DISENCHANT", "UPGRADE", "REROLL", "FORGE",
                                          "TOKENSHARDUPGRADE", "TOKENESSENCEUPGRADE"}));
}

}  // namespace
}  // namespace Kest::Host
