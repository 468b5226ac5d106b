#include <algorithm>
#include <set>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

// The first line of a case is replaced by its second; YAML has the places that JSON has.
std::string LoadChanged(const std::string& change) {
  const size_t end = change.find('\n');
  const std::string json = ChangedWorld(change.substr(0, end), change.substr(end + 1));
  std::string failure;
  for (const char* comment : {"\n# In YAML.", ""}) {
    const auto world = World::Load(json + comment, "pond", 1);
    const std::string text = world ? "loaded" : world.GetFailure().text;
    EXPECT_TRUE(failure.empty() || failure == text) << failure;
    failure = text;
  }
  return failure;
}

TEST(WorldFile, ABrokenFileIsRefusedWithThePlaceAndTheReason) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/world_failures.txt", LoadChanged));
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
