#include <random>

#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

class WorldCraft : public WorldTest {
 protected:
  void SetUp() override {
    WorldTest::SetUp();
    SignIn();
  }
  void HoldMany() {
    Control(R"(POST /inventory {"lootName": "CHEST_reed", "delta": 2000})");
    Control(R"(POST /inventory {"lootName": "MATERIAL_key", "delta": 2000})");
  }
};

TEST_F(WorldCraft, ItemsMustFitTheSlotsAndBeHeld) {
  const struct {
    const char *why, *recipe, *items;
    int repeat;
    const char* status;
  } kCases[] = {
      {"unknown recipe", "OPEN_nothing", "CHEST_reed", 1, "INVALID_RECIPE"},
      {"too few", "OPEN_reed", "CHEST_reed", 1, "INVALID_INGREDIENTS"},
      {"too many", "OPEN_reed", "CHEST_reed MATERIAL_key MATERIAL_key", 1, "INVALID_INGREDIENTS"},
      {"both for one slot", "OPEN_reed", "CHEST_reed CHEST_reed", 1, "INVALID_INGREDIENTS"},
      {"token of another champion", "CROWN", "CHAMPION_TOKEN_star-2 CURRENCY_champion", 1,
       "INVALID_INGREDIENTS"},
      {"more runs than keys", "OPEN_reed", "CHEST_reed MATERIAL_key", 4, "MISSING_INGREDIENTS"},
      {"three units, two held", "REROLL", "CHAMPION_RENTAL_1", 1, "MISSING_INGREDIENTS"},
      {"no run at all", "OPEN_reed", "CHEST_reed MATERIAL_key", 0, "INVALID_REQUEST"},
      {"too many runs", "OPEN_reed", "CHEST_reed MATERIAL_key", 1001, "INVALID_REQUEST"},
  };
  const auto before = Inventory();
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    Json result = Craft(c.recipe, c.items, c.repeat);
    EXPECT_EQ(result["status"], c.status) << result;
    EXPECT_EQ(Part(result, "added") + Part(result, "removed"), "[][]");
    EXPECT_EQ(Inventory(), before);
  }
  EXPECT_EQ(Transact("craftPlayerLootWithRefId", "{")["status"], "INVALID_REQUEST");
}

TEST_F(WorldCraft, TakesEachItemFromTheSlotThatNeedsIt) {
  const struct {
    const char *why, *recipe, *items;
    CountsById removed;
  } kCases[] = {
      {"slots in any order",
       "OPEN_reed",
       "MATERIAL_key CHEST_reed",
       {{"MATERIAL_key", 1}, {"CHEST_reed", 1}}},
      {"one item per unit",
       "REROLL",
       "CHAMPION_RENTAL_1 CHAMPION_RENTAL_2 CHAMPION_RENTAL_1",
       {{"CHAMPION_RENTAL_1", 2}, {"CHAMPION_RENTAL_2", 1}}},
      {"a token and a quantity",
       "CROWN",
       "CHAMPION_TOKEN_star-1 CURRENCY_champion",
       {{"CHAMPION_TOKEN_star-1", 2}, {"CURRENCY_champion", 4}}},
      {"the item that fits both moves on",
       "MIX",
       "CHAMPION_RENTAL_1 CHAMPION_RENTAL_2",
       {{"CHAMPION_RENTAL_1", 1}, {"CHAMPION_RENTAL_2", 1}}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    Load(kSmallWorld, 1);
    SignIn();
    Json result = Craft(c.recipe, c.items);
    EXPECT_EQ(Counts(result["removed"]), c.removed) << result;
    if (std::string_view(c.recipe) != "CROWN") continue;
    EXPECT_EQ(Counts(result["added"]), (CountsById{{"CHAMPION_TOKEN_crown-1", 1}}))
        << "issued for the champion of its ingredient";
  }
}

TEST_F(WorldCraft, ACountNeverLeaves32BitsAndItsSumNever64) {
  const std::string output = R"({"lootName": "EMOTE_7", "quantity": 1000000}]},)";
  const std::string much = R"({"lootName": "TABLE_any", "quantityExpression": "2147483647"},)";
  std::string text = ChangedWorld(R"({"lootName": "EMOTE_7", "quantity": 2}]},)", output);
  const std::string_view place = R"({"lootName": "TABLE_any"},)";
  std::string outputs;
  for (int i = 0; i < 20; ++i) outputs += much;  // a quarter of them draws the emote
  Load(text.replace(text.find(place), place.size(), outputs), 1);
  SignIn();
  HoldMany();
  const auto before = Inventory();
  EXPECT_EQ(Craft("OPEN_reed", "CHEST_reed MATERIAL_key", 1000)["status"], "INVENTORY_FULL");
  EXPECT_EQ(Inventory(), before);
}

TEST_F(WorldCraft, OddsComeOutAsTheyAreWritten) {
  HoldMany();
  const auto added = Counts(Craft("OPEN_reed", "CHEST_reed MATERIAL_key", 1000)["added"]);
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
    Load(text, seed);
    SignIn();
    const auto open = [&] {
      return Counts(Craft("OPEN_reed", "CHEST_reed MATERIAL_key")["added"]);
    };
    EXPECT_TRUE(open().contains("EMOTE_7")) << "the skin is held";
    Control(R"(POST /inventory {"lootName": "SKIN_1001", "delta": -2})");
    EXPECT_TRUE(open().contains("SKIN_1001")) << "the emote is held";
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
    Load(World::SampleText(), worldSeed);
    SignIn();
    const Json file = Parse(World::SampleText());
    for (const auto& [id, count] : Inventory()) {
      if (id.find('-') != std::string::npos) continue;
      Control("POST /inventory {\"lootName\": " + JsonString(id) + ", \"delta\": 8}");
    }
    std::mt19937_64 random(301);
    std::string log;
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
      CountsById expected = Inventory();
      const Json& recipe = file["recipes"][random() % file["recipes"].size()];
      const std::string items = RandomItems(recipe, file["queries"], random);
      Json result =
          Craft(recipe["recipeName"].get<std::string>(), items, static_cast<int>(1 + random() % 2));
      for (const auto& [id, count] : Counts(result["removed"])) {
        EXPECT_TRUE(count > 0 && expected[id] >= count) << id;
        EXPECT_NE((" " + items).find(" " + id + " "), std::string::npos) << id;
        expected[id] -= count;
      }
      for (const auto& [id, count] : Counts(result["added"])) expected[id] += count;
      std::erase_if(expected, [](const auto& item) { return item.second == 0; });
      EXPECT_EQ(Inventory(), expected) << "round " << round << " " << WriteJson(result);
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
