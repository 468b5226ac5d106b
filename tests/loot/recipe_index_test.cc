#include "loot/model/recipe_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "loot/model/loot_definitions.h"
#include "tests/support/golden.h"
#include "tests/support/log_capture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A recipe a line: name, type, then slots as "number:query*quantity" and outputs as
// "name=quantity".
std::vector<SVDS::LootSvdsRecipeClientDTO> Recipes(const std::string& text) {
  std::vector<SVDS::LootSvdsRecipeClientDTO> recipes;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    SVDS::LootSvdsRecipeClientDTO& recipe = recipes.emplace_back();
    words >> recipe.recipeName >> recipe.type;
    for (std::string word; words >> word;) {
      const size_t colon = word.find(':'), star = word.find('*'), equal = word.find('=');
      if (colon == std::string::npos) {
        recipe.outputs.push_back({word.substr(0, equal), word.substr(equal + 1), 1, false});
      } else {
        recipe.slots.push_back({std::stoi(word), word.substr(colon + 1, star - colon - 1),
                                star == std::string::npos ? "1" : word.substr(star + 1)});
      }
    }
  }
  return recipes;
}

std::vector<SVDS::LootItemClientDTO> Items(std::initializer_list<const char*> names) {
  std::vector<SVDS::LootItemClientDTO> items;
  for (const char* name : names) items.emplace_back().lootName = name;
  return items;
}

class RecipeIndexTest : public ::testing::Test {
 protected:
  RecipeIndexTest() {
    lists_.items = MakeLootItems(Items({"CHEST_a", "CURRENCY_champion"}));
    BindingProperty queries = BindingProperty::Structure();
    BindingProperty& shards = queries.GetOrAddMember("shards");
    for (const char* name : {"SHARD_1", "SHARD_2", "SHARD_1", "TOKEN-42"}) {
      shards.Append().SetString(name);
    }
    shards.Append().SetSigned(5);
    queries.GetOrAddMember("one").SetString("SHARD_2");
    queries.GetOrAddMember("essences").Append().SetString("CURRENCY_champion");
    queries.GetOrAddMember("essences").Append().SetString("CURRENCY_cosmetic");
    queries.GetOrAddMember("none").SetCollection();
    queries.GetOrAddMember("CHEST_a").SetSigned(1);
    lists_.queryResults = MakeShared(std::move(queries));
  }
  const RecipeIndex& Index(const std::string& recipes) {
    lists_.recipes = MakeShared(Recipes(recipes));
    return definitions_.emplace(lists_).recipes();
  }
  std::string TakingFirst(std::string_view name, std::string_view id) {
    std::string names;
    for (const IndexedRecipe* indexed : definitions_->recipes().RecipesTakingFirst(name, id)) {
      names += indexed->recipe->recipeName + " ";
    }
    return names;
  }
  LootDefinitions::Lists lists_;
  std::optional<LootDefinitions> definitions_;
};

TEST_F(RecipeIndexTest, FindsRecipesAndOffersByNameAndId) {
  const RecipeIndex& index = Index(
      "upgrade UPGRADE 2:shards 1:CURRENCY_champion\n"
      "open OPEN 1:CHEST_a\n"
      "reroll REROLL 1:shards 2:one 3:shards\n"
      "lost OPEN 1:CHEST_unknown 2:none\n"
      "tie X 7:one 7:CHEST_a\n"
      "bare X\n"
      "several DISENCHANT 1:one ESSENCE_low=2 ESSENCE_high=900\n"
      "best DISENCHANT 1:none 2:shards ESSENCE=10*2\n"
      "same DISENCHANT 1:shards ESSENCE_same=20\n"
      "equal DISENCHANT 1:one ESSENCE_late=20\n"
      "forge FORGE 1:shards ESSENCE_forged=500\n"
      "empty DISENCHANT 1:shards\n"
      "up UPGRADE 1:shards 2:CURRENCY_champion*30\n"
      "dear UPGRADE 3:essences*70 1:one 2:essences\n"
      "free UPGRADE 1:one");
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/recipes_of_items.txt", [&](auto input) {
    std::istringstream words(input);
    std::string name, id;
    words >> name >> id;
    std::string outcome = "first in " + TakingFirst(name, id);
    if (const auto offer = index.FindDisenchant(name, id)) {
      outcome += "becomes " + std::to_string(offer->quantity) + " " + std::string(offer->lootName);
    }
    if (const auto offer = index.FindUpgrade(name, id)) {
      outcome += " costs " + std::to_string(offer->quantity) + " " + std::string(offer->currencyId);
    }
    return outcome;
  }));
  const IndexedSlot& first = index.recipes().at(0).slots.at(0);
  EXPECT_EQ(first.slot->slotNumber, 1);
  EXPECT_THAT(*first.lootNames, ElementsAre("CURRENCY_champion"));
  EXPECT_THAT(*index.recipes().at(3).slots.at(1).lootNames, IsEmpty());
}

TEST_F(RecipeIndexTest, AnUnreadableQuantityIsZeroAndSaysSoOnce) {
  LogCapture log;
  const RecipeIndex& index = Index("r X 1:one*few OUT=1/0");
  EXPECT_EQ(index.recipes().at(0).slots.at(0).quantity, 0);
  EXPECT_THAT(index.recipes().at(0).outputQuantities, ElementsAre(0));
  EXPECT_THAT(log.Lines(), ElementsAre("  WARN|| Loot recipe r has an unreadable quantity: few",
                                       "  WARN|| Loot recipe r has an unreadable quantity: 1/0"));
}

TEST(LootDefinitionsTest, DisplayCategoriesAreDistinctAndSorted) {
  auto items = Items({"1", "2", "3", "4", "5", "6", "7"});
  const char* category[] = {"SKIN", "OTHER", "CHEST", "", "SKIN", "ANOTHER", "EMOTE"};
  for (size_t i = 0; i < items.size(); ++i) items[i].displayCategories = category[i];
  LootDefinitions::Lists lists = LootDefinitions().lists();
  lists.items = MakeLootItems(items);
  const LootDefinitions definitions(lists);
  EXPECT_THAT(definitions.displayCategories(),
              ElementsAre("", "ANOTHER", "OTHER", "CHEST", "SKIN", "EMOTE"));
  EXPECT_EQ(definitions.Find("3")->displayCategories, "CHEST");
  EXPECT_EQ(definitions.Find("8"), nullptr);
}

}  // namespace
}  // namespace Kest::Client::Loot
