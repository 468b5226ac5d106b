#include "host/world/loot/odds.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Kest::Host {
namespace {

// Recipes of outputs that draw from small tables, some of them without duplicates.
WorldData RandomTables(SeededRandom& random, PlatformRecipe* recipe) {
  WorldData data;
  for (int i = 0; i < 6; ++i) {
    const std::string name = "ITEM_" + std::to_string(i);
    data.definitionIndex[name] = data.definitions.size();
    data.definitions.push_back({.lootName = name, .type = "MATERIAL", .record = {}});
  }
  const auto item = [&] { return data.definitions[random.Below(6)].lootName; };
  for (const char* table : {"TABLE_a", "TABLE_b"}) {
    for (uint64_t i = 0; i <= random.Below(4); ++i) {
      data.odds[table].push_back(
          {item(), static_cast<int64_t>(1 + random.Below(5)), static_cast<int64_t>(1 + i)});
    }
  }
  recipe->recipeName = "ANY";
  for (uint64_t i = 0; i <= random.Below(4); ++i) {
    const uint64_t kind = random.Below(3);
    recipe->outputs.push_back({kind == 0   ? item()
                               : kind == 1 ? "TABLE_a"
                                           : "TABLE_b",
                               1, random.Below(2) == 0 ? 1 : random.Fraction(),
                               random.Below(2) == 0});
  }
  return data;
}

TEST(Odds, WhatTheTablesGiveIsWhatTheTriesShow) {
  constexpr int64_t kTrials = 20'000;
  SeededRandom random(301);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    PlatformRecipe recipe;
    const WorldData data = RandomTables(random, &recipe);
    Inventory inventory;
    if (round % 2 == 0) inventory.Add({"ITEM_0", ""}, 1, -1);
    for (const auto& [name, item] :
         TryOdds(data, recipe, inventory, PlatformCollections(), kTrials, random)) {
      ASSERT_TRUE(item.exact) << name;
      const double share = static_cast<double>(item.drawn) / kTrials;
      const double deviation = std::sqrt(*item.exact * (1 - *item.exact) / kTrials);
      EXPECT_NEAR(share, *item.exact, 5 * deviation + 1e-9) << name;
      EXPECT_GE(item.quantity, item.drawn);
    }
  }
}

TEST(Odds, TooManyCasesAreNotEvaluated) {
  WorldData data;
  PlatformRecipe recipe;
  for (int i = 0; i < 40; ++i) {
    const std::string name = "ITEM_" + std::to_string(i);
    data.definitionIndex[name] = data.definitions.size();
    data.definitions.push_back({.lootName = name, .type = "MATERIAL", .record = {}});
    data.odds["TABLE"].push_back({name, 1, 1});
  }
  for (int i = 0; i < 10; ++i) recipe.outputs.push_back({"TABLE", 1, 1, false});
  SeededRandom random(1);
  const auto odds = TryOdds(data, recipe, {}, {}, 10, random);
  EXPECT_FALSE(odds.empty());
  for (const auto& [name, item] : odds) EXPECT_FALSE(item.exact) << name;
  EXPECT_EQ(DrawCost(data, recipe), 401);
}

TEST(Odds, TheIntervalIsWilsons) {
  const struct {
    int64_t drawn;
    int64_t trials;
    double low;
    double high;
  } cases[] = {{0, 10, 0, 0.2775},  // values of published tables
               {10, 10, 0.7225, 1},
               {5, 10, 0.2366, 0.7634},
               {1, 100, 0.0018, 0.0545}};
  for (const auto& c : cases) {
    const ShareInterval interval = WilsonInterval(c.drawn, c.trials);
    EXPECT_NEAR(interval.low, c.low, 5e-5) << c.drawn;
    EXPECT_NEAR(interval.high, c.high, 5e-5) << c.drawn;
  }
}

}  // namespace
}  // namespace Kest::Host
