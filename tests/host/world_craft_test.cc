#include <random>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

class WorldCraft : public WorldTest {
 protected:
  void StartWithMany(std::string_view text) {
    Start(text, 1);
    Send(R"(POST /inventory {"lootName": "CHEST_reed", "delta": 2000})");
    Send(R"(POST /inventory {"lootName": "MATERIAL_key", "delta": 2000})");
  }
  Json Open(int repeat) { return Craft("OPEN_reed", "CHEST_reed MATERIAL_key", repeat); }
};

TEST_F(WorldCraft, ACountNeverLeaves32BitsAndItsSumNever64) {
  std::string text =
      ChangedWorld(R"("EMOTE_7", "quantity": 2}]},)", R"("EMOTE_7", "quantity": 1000000}]},)");
  const std::string_view place = R"({"lootName": "TABLE_any"},)";
  std::string outputs;
  for (int i = 0; i < 20; ++i) {  // a quarter of them draws the emote
    outputs += R"({"lootName": "TABLE_any", "quantityExpression": "2147483647"},)";
  }
  StartWithMany(text.replace(text.find(place), place.size(), outputs));
  EXPECT_EQ(Open(1000)["status"], "INVENTORY_FULL");
}

TEST_F(WorldCraft, OddsComeOutAsTheyAreWritten) {
  StartWithMany(ChangedWorld("", ""));
  const auto added = Counts(Open(1000)["added"]);
  EXPECT_EQ(added.at("CURRENCY_champion"), 10000);
  EXPECT_EQ(added.at("SKIN_1001") + added.at("EMOTE_7") / 2, 1000);
  // Three standard deviations around 750 and 250.
  EXPECT_NEAR(static_cast<double>(added.at("SKIN_1001")), 750, 42);
  EXPECT_NEAR(static_cast<double>(added.at("CHEST_reed")), 250, 42);
}

TEST_F(WorldCraft, WithoutDuplicatesTheDrawSkipsWhatIsHeldOrOwned) {
  const std::string text = ChangedWorld(R"({"lootName": "TABLE_any"})",
                                        R"({"lootName": "TABLE_any", "allowDuplicates": false})");
  for (uint64_t seed = 0; seed < 20; ++seed) {
    Start(text, seed);
    EXPECT_TRUE(Counts(Open(1)["added"]).contains("EMOTE_7")) << "the skin is held";
    Send(R"(POST /inventory {"lootName": "SKIN_1001", "delta": -2})");
    EXPECT_TRUE(Counts(Open(1)["added"]).contains("SKIN_1001")) << "the emote is held";
  }
}

TEST_F(WorldCraft, WhatHasNoPlaceAnyMoreIsAConflict) {
  const struct {
    const char* fill;
    const char* more;
    const char* list;
  } cases[] = {{R"(POST /next-result {"recipe": "OPEN_reed", "added": []})",
                R"(POST /next-result {"recipe": "OPEN_reed", "added": []})", "GET /next-result"},
               {R"(POST /faults {"service": "*", "action": "hold"})",
                R"(PUT /service/craftPlayerLootWithRefId {"latency": 1})", "GET /faults"}};
  Start(ChangedWorld("", ""), 1);
  for (const auto& c : cases) {
    for (int i = 0; i < 100; ++i) ASSERT_EQ(Send(c.fill).status, 200);
    const std::string before = Send(c.list).body;
    EXPECT_EQ(Send(c.more).status, 409) << c.more;
    EXPECT_EQ(Send(c.list).body, before);
  }
}

// Draws an item for every slot from what its query names; some are not held.
std::string RandomItems(const Json& recipe, const Json& queries, std::mt19937_64& random) {
  std::string items;
  for (const Json& slot : recipe["slots"]) {
    const auto query = slot["query"].get<std::string>();
    Json named = queries.value(query, Json(query));
    if (named.is_array()) named = named[random() % named.size()];
    items += named.get<std::string>() + " ";
  }
  return items;
}

// Crafts recipes of the sample world at random. Returns every result, one after the other.
class CraftProperty : public WorldTest {
 protected:
  std::string Run(uint64_t worldSeed) {
    Start(World::SampleText(), worldSeed);
    const Json file = Parse(World::SampleText());
    for (const auto& [id, count] : Inventory()) {
      if (id.find('-') != std::string::npos) continue;
      Send("POST /inventory {\"lootName\": " + JsonString(id) + ", \"delta\": 8}");
    }
    std::mt19937_64 random(301);
    std::string log;
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
      SCOPED_TRACE(round);
      const Json& recipe = file["recipes"][random() % file["recipes"].size()];
      const std::string items = RandomItems(recipe, file["queries"], random);
      Json result =
          Craft(recipe["recipeName"].get<std::string>(), items, static_cast<int>(1 + random() % 2));
      for (const auto& [id, count] : Counts(result["removed"])) {
        EXPECT_NE((" " + items).find(" " + id + " "), std::string::npos) << id;
      }
      crafted_ += result["status"] == "OK";
      log += WriteJson(result);
    }
    return log;
  }

  int crafted_ = 0;
};

TEST_F(CraftProperty, NothingIsLostOrMadeOfNothingAndTheSeedDecides) {
  const std::string first = Run(5);
  EXPECT_GT(crafted_, 60) << "too few crafts went through for the run to mean anything";
  EXPECT_TRUE(Run(5) == first);
  EXPECT_FALSE(Run(6) == first);
}

}  // namespace
}  // namespace Kest::Host
