#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "host/world/file/shipped_worlds.h"
#include "host/world/input/document.h"
#include "host/world/input/yaml_writer.h"
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

// The warnings of the small world after such a change.
std::string WarningsOf(const std::string& change) {
  const size_t end = change.find('\n');
  std::vector<std::string> warnings;
  const auto data =
      ReadWorldFile({"pond", ChangedWorld(change.substr(0, end), change.substr(end + 1))},
                    {.findBase = {}, .seed = 1, .warnings = &warnings});
  std::string lines = data ? "" : data.GetFailure().text;
  for (const std::string& warning : warnings) lines += (lines.empty() ? "" : "\n") + warning;
  return lines;
}

TEST(WorldFile, WhatIsProbablyNotMeantIsWarnedOf) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/world_warnings.txt", WarningsOf));
}

// What a file says over the small world, as parts of the result; or why it cannot be used.
std::string Layered(const std::string& over) {
  const auto base = [](const std::string& extends, const std::string&) {
    return extends == "pond"
               ? Maybe<WorldText>(WorldText{"pond", Testing::SourceText("tests/host/pond.json")})
               : Maybe<WorldText>(Failure{"no \"" + extends + "\""});
  };
  auto world = World::Load({"over", over}, {.findBase = base});
  if (!world) return world.GetFailure().text;
  const Json file = Parse(world.GetValue()->File());
  return WriteJson(Json{file["name"], file["player"]["summonerId"], file["player"]["inventory"],
                        file["champions"], file["odds"],
                        file["service"]["latencies"]["redeemPlayerLoot"]});
}

TEST(WorldFile, AWorldThatExtendsAnotherSaysHowItDiffers) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/world_layers.txt", Layered));
}

TEST(WorldFile, YamlSaysTheSameAsJson) {
  const auto load = [](std::string_view text) {
    auto world = World::Load(text, "pond", 1);
    return world ? world.GetValue()->Control("GET", "/state", "").body : world.GetFailure().text;
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

TEST(ShippedWorlds, HaveNoWarningsAndAreWrittenAsTheyAreRead) {
  for (const std::string_view name : ShippedWorldNames()) {
    std::vector<std::string> warnings;
    const auto load = [&](const std::string& text) {
      return World::Load({std::string(name), text}, {.findBase = {}, .warnings = &warnings});
    };
    const auto world = load(std::string(ShippedWorld(name)));
    ASSERT_TRUE(world) << world.GetFailure().text;
    EXPECT_THAT(warnings, testing::IsEmpty());
    const std::string text = world.GetValue()->File();
    const auto again = load(text);
    ASSERT_TRUE(again) << again.GetFailure().text;
    EXPECT_EQ(again.GetValue()->File(), text) << name;
    const std::string yaml = WriteYaml(Parse(text));
    const auto read = Document::FromYaml("yaml", yaml);
    ASSERT_TRUE(read) << read.GetFailure().text;
    EXPECT_EQ(WriteJson(read.GetValue().root()), text);
  }
}

using SampleWorld = WorldTest;

// What is written goes on as the world that was written: its numbers too.
TEST_F(SampleWorld, GoesOnFromItsFile) {
  Start(World::SampleText(), 7);
  for (const char* call :
       {"PUT /gameflow {\"phase\":\"Lobby\"}", "PUT /configuration/Enabled \"odd\"",
        "PUT /configuration/Other [1]", "PUT /token {\"token\":null}",
        "PUT /summoner {\"summonerLevel\":0}", "PUT /collections {\"withheld\":true}",
        "PUT /recipes/CHEST_harbour_OPEN {\"crafterName\":\"x\"}", "POST /login {\"summonerId\":5}",
        "POST /login-packet {\"simpleMessages\":[{\"params\":[\"a\"]}]}"}) {
    EXPECT_EQ(Send(call).status, 200) << call;
  }
  Craft("CHEST_harbour_OPEN", "CHEST_harbour MATERIAL_key");
  Transact("redeemPlayerLoot", {{"lootName", "CHROMA_11001_coral"}});
  auto loaded = World::Load(world_->File(), "file", 99);
  ASSERT_TRUE(loaded) << loaded.GetFailure().text;
  std::unique_ptr<World> other = std::move(loaded.GetValue());
  other->SignInAtStart(false);
  EXPECT_EQ(other->File(), world_->File());
  std::set<std::string> results;
  for (int i = 0; i < 2; ++i, std::swap(world_, other)) {
    results.insert(WriteJson(Craft("CHEST_lantern_OPEN", "CHEST_lantern")));
    results.insert(WriteJson(Craft("CHEST_harbour_OPEN", "CHEST_harbour MATERIAL_key")));
  }
  EXPECT_EQ(results.size(), 2U) << "each craft gives the same in both";
}

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
