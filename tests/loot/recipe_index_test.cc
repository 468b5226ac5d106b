#include "loot/model/recipe_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loot/model/loot_definitions.h"
#include "tests/support/log_capture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Slot {
  int32_t number;
  std::string query;
  std::string quantity = "1";
};

SVDS::LootSvdsRecipeClientDTO MakeRecipe(std::string name, std::string type,
                                         std::vector<Slot> slots, std::string output = "",
                                         std::string quantity = "1") {
  SVDS::LootSvdsRecipeClientDTO recipe;
  recipe.recipeName = std::move(name);
  recipe.type = std::move(type);
  for (Slot& slot : slots) recipe.slots.push_back({slot.number, slot.query, slot.quantity});
  if (!output.empty()) recipe.outputs.push_back({output, quantity, 1.0, false});
  return recipe;
}

std::vector<std::string> Names(const std::vector<const IndexedRecipe*>& recipes) {
  std::vector<std::string> names;
  for (const IndexedRecipe* indexed : recipes) names.push_back(indexed->recipe->recipeName);
  return names;
}

class RecipeIndexTest : public ::testing::Test {
 protected:
  RecipeIndexTest() {
    std::vector<SVDS::LootItemClientDTO> items(2);
    items[0].lootName = "CHEST_a";
    items[1].lootName = "CURRENCY_champion";
    definitions_.ReplaceItems(std::move(items));
    BindingProperty queries = BindingProperty::Structure();
    BindingProperty& shards = queries.TakeMember("all shards");
    for (const char* name : {"SHARD_1", "SHARD_2", "SHARD_1", "TOKEN-42"}) {
      shards.Append().SetString(name);
    }
    shards.Append().SetSigned(5);
    queries.TakeMember("one").SetString("SHARD_2");
    queries.TakeMember("essences").Append().SetString("CURRENCY_champion");
    queries.TakeMember("essences").Append().SetString("CURRENCY_cosmetic");
    queries.TakeMember("none").SetCollection();
    queries.TakeMember("CHEST_a").SetSigned(1);
    definitions_.ReplaceQueryResults(std::move(queries));
  }
  const RecipeIndex& Index(std::vector<SVDS::LootSvdsRecipeClientDTO> recipes) {
    definitions_.ReplaceRecipes(std::move(recipes));
    return definitions_.recipes();
  }
  LootDefinitions definitions_;
};

TEST_F(RecipeIndexTest, FindsRecipesByNameAndIdInOrder) {
  const RecipeIndex& index =
      Index({MakeRecipe("upgrade", "UPGRADE", {{2, "all shards"}, {1, "CURRENCY_champion"}}),
             MakeRecipe("open", "OPEN", {{1, "CHEST_a"}}),
             MakeRecipe("reroll", "REROLL", {{1, "all shards"}, {2, "one"}, {3, "all shards"}}),
             MakeRecipe("lost", "OPEN", {{1, "CHEST_unknown"}, {2, "none"}}),
             MakeRecipe("tie", "X", {{7, "one"}, {7, "CHEST_a"}}), MakeRecipe("bare", "X", {})});
  const struct {
    const char* why;
    std::string_view name, id;
    std::vector<std::string> first;
  } kCases[] = {
      {"from a list", "SHARD_1", "SHARD_1", {"reroll"}},
      {"list and single text", "SHARD_2", "SHARD_2", {"reroll", "tie"}},
      {"by id only", "TOKEN", "TOKEN-42", {"reroll"}},
      {"by name although the id is another", "SHARD_1", "SHARD_1-9", {"reroll"}},
      {"other reference id", "TOKEN", "TOKEN-43", {}},
      {"query names a definition; a number is no result", "CHEST_a", "CHEST_a", {"open"}},
      {"query names nothing", "CHEST_unknown", "CHEST_unknown", {}},
      {"lowest slot number, not first in the list",
       "CURRENCY_champion",
       "CURRENCY_champion",
       {"upgrade"}},
      {"empty name", "", "", {}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(Names(index.RecipesTakingFirst(c.name, c.id)), c.first);
  }
  const IndexedSlot& first = index.recipes().at(0).slots.at(0);
  EXPECT_EQ(first.slot->slotNumber, 1);
  EXPECT_THAT(*first.lootNames, ElementsAre("CURRENCY_champion"));
  EXPECT_THAT(*index.recipes().at(3).slots.at(1).lootNames, IsEmpty());
}

TEST_F(RecipeIndexTest, OffersTheBestDisenchantAndTheLastUpgrade) {
  auto several = MakeRecipe("several", "DISENCHANT", {{1, "one"}}, "ESSENCE_low", "2");
  several.outputs.push_back({"ESSENCE_high", "900", 1, false});
  const RecipeIndex& index =
      Index({several,
             MakeRecipe("best", "DISENCHANT", {{1, "none"}, {2, "all shards"}}, "ESSENCE", "10*2"),
             MakeRecipe("equal", "DISENCHANT", {{1, "one"}}, "ESSENCE_late", "20"),
             MakeRecipe("forge", "FORGE", {{1, "all shards"}}, "ESSENCE_forged", "500"),
             MakeRecipe("empty", "DISENCHANT", {{1, "all shards"}}),
             MakeRecipe("up", "UPGRADE", {{1, "all shards"}, {2, "CURRENCY_champion", "30"}}),
             MakeRecipe("dear", "UPGRADE", {{3, "essences", "70"}, {1, "one"}, {2, "essences"}}),
             MakeRecipe("free", "UPGRADE", {{1, "one"}})});
  const auto best = index.FindDisenchant("SHARD_2", "SHARD_2");
  ASSERT_TRUE(best);
  EXPECT_EQ(best->lootName, "ESSENCE") << "the first of the largest first outputs";
  EXPECT_EQ(best->quantity, 20);
  EXPECT_EQ(index.FindUpgrade("SHARD_1", "SHARD_1")->quantity, 30);
  const auto last = index.FindUpgrade("SHARD_2", "SHARD_2");
  ASSERT_TRUE(last);
  EXPECT_EQ(last->currencyId, "CURRENCY_cosmetic") << "the last id of the highest slot";
  EXPECT_EQ(last->quantity, 70);
  EXPECT_TRUE(index.FindDisenchant("TOKEN", "TOKEN-42")) << "by id";
  EXPECT_TRUE(index.FindDisenchant("SHARD_1", "SHARD_1-9")) << "by name";
  EXPECT_FALSE(index.FindDisenchant("TOKEN", "TOKEN-43"));
  EXPECT_FALSE(index.FindDisenchant("CHEST_a", "CHEST_a"));
  EXPECT_FALSE(index.FindUpgrade("CHEST_a", "CHEST_a"));
}

TEST_F(RecipeIndexTest, FollowsEveryReplacement) {
  EXPECT_THAT(
      Index({MakeRecipe("r", "X", {{1, "CHEST_b"}})}).RecipesTakingFirst("CHEST_b", "CHEST_b"),
      IsEmpty());
  std::vector<SVDS::LootItemClientDTO> items(1);
  items[0].lootName = "CHEST_b";
  definitions_.ReplaceItems(items);
  EXPECT_EQ(definitions_.recipes().RecipesTakingFirst("CHEST_b", "CHEST_b").size(), 1u);
  BindingProperty queries;
  queries.TakeMember("CHEST_b").SetString("CHEST_c");
  definitions_.ReplaceQueryResults(std::move(queries));
  EXPECT_THAT(definitions_.recipes().RecipesTakingFirst("CHEST_b", "CHEST_b"), IsEmpty());
  EXPECT_EQ(definitions_.recipes().RecipesTakingFirst("CHEST_c", "CHEST_c").size(), 1u);
}

TEST_F(RecipeIndexTest, AnUnreadableQuantityIsZeroAndSaysSoOnce) {
  LogCapture log;
  const RecipeIndex& index = Index({MakeRecipe("r", "X", {{1, "one", "few"}}, "OUT", "1/0"),
                                    MakeRecipe("s", "X", {{1, "one", "4"}}, "OUT", "1")});
  definitions_.recipes();
  EXPECT_EQ(index.recipes().at(0).slots.at(0).quantity, 0);
  EXPECT_THAT(index.recipes().at(0).outputQuantities, ElementsAre(0));
  EXPECT_EQ(index.recipes().at(1).slots.at(0).quantity, 4);
  EXPECT_THAT(log.Lines(), ElementsAre("  WARN|| Loot recipe r has an unreadable quantity: few",
                                       "  WARN|| Loot recipe r has an unreadable quantity: 1/0"));
}

TEST(LootDefinitionsTest, DisplayCategoriesAreDistinctAndSorted) {
  std::vector<SVDS::LootItemClientDTO> items;
  for (const char* category : {"SKIN", "OTHER", "CHEST", "", "SKIN", "ANOTHER", "EMOTE"}) {
    items.push_back({});
    items.back().lootName = "item " + std::to_string(items.size());
    items.back().displayCategories = category;
  }
  LootDefinitions definitions;
  definitions.ReplaceItems(items);
  EXPECT_THAT(definitions.displayCategories(),
              ElementsAre("", "ANOTHER", "OTHER", "CHEST", "SKIN", "EMOTE"));
  EXPECT_EQ(definitions.Find("item 3")->displayCategories, "CHEST");
  EXPECT_EQ(definitions.Find("item 8"), nullptr);
}

}  // namespace
}  // namespace Kest::Client::Loot
