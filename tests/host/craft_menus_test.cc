// What the plugin's context menus say of a craft, beside what the emulated platform does with it.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <random>

#include "host/world/loot/ingredients.h"
#include "loot/model/loot_id.h"
#include "loot/state/context_menus.h"

namespace Kest::Host {
namespace {

using namespace Client::Loot;  // NOLINT(google-build-using-namespace): the plugin's side

using Random = std::mt19937_64;

constexpr std::array kItems = {"REED", "MOSS", "MOSS-1", "STAR-1", "STAR-2", "CROWN-1", "CROWN-2"};
// Loot names, then loot ids.
constexpr std::array kListable = {"REED", "MOSS", "STAR", "CROWN", "STAR-1", "CROWN-2"};
constexpr size_t kNames = 4;
constexpr int kMostUnits = 4;

LootKey KeyOf(const std::string& lootId) {
  const LootIdParts parts = SplitLootId(lootId);
  return {std::string(parts.lootName), std::string(parts.refId)};
}

// The same recipes and items on both sides.
struct Pair {
  Pair(size_t listable, Random& random) {
    BindingProperty results = BindingProperty::Structure();
    std::array<std::unordered_set<std::string>, 5> queries;
    for (size_t i = 0; i < queries.size(); ++i) {
      BindingProperty& names = results.GetOrAddMember(std::to_string(i));
      for (uint64_t left = 1 + random() % 4; left > 0; --left) {
        names.Append().SetString(kListable[random() % listable]);
        queries[i].emplace(names.FindElement(names.Size() - 1)->AsString());
      }
    }
    std::vector<SVDS::LootSvdsRecipeClientDTO> plugins(8);
    for (auto& recipe : plugins) {
      recipe.recipeName = "recipe " + std::to_string(recipes.size());
      PlatformRecipe& platforms = recipes.emplace_back();
      for (int units = 0; units < kMostUnits && (units == 0 || random() % 6 != 0);) {
        const int quantity = units < kMostUnits - 1 && random() % 3 == 0 ? 2 : 1;
        const size_t query = random() % queries.size();
        recipe.slots.push_back({units, std::to_string(query), std::to_string(quantity)});
        PlatformRecipeSlot& slot = platforms.slots.emplace_back();
        slot.quantity = quantity;
        slot.accepted = queries[query];
        units += quantity;
      }
    }
    for (const char* lootId : kItems) {
      const auto count = static_cast<int32_t>(random() % 3);
      const LootKey key = KeyOf(lootId);
      inventory.Add(key, count, -1);
      Api::PlayerLoot item;
      item.lootName = key.lootName;
      item.lootId = lootId;
      item.refId = key.refId;
      item.count = count;
      if (count > 0) state.store.Put(item);
    }
    state.definitions = std::make_shared<const LootDefinitions>(LootDefinitions::Lists{
        MakeLootItems({}), MakeShared(std::move(plugins)), MakeShared(std::move(results))});
  }

  std::vector<PlatformRecipe> recipes;
  Inventory inventory;
  LootState state;
  LootSwitch loot{true, true};
  RecipeViews views{state};
  ContextMenus menus{loot, state.store, state.gameData, views};
};

// Every list of up to kMostUnits items, by place in kItems.
void ForEachList(const std::function<void(const std::vector<LootKey>&)>& visit) {
  std::vector<size_t> list = {0};
  while (!list.empty()) {
    std::vector<LootKey> items;
    for (const size_t kind : list) items.push_back(KeyOf(kItems[kind]));
    visit(items);
    if (list.size() < kMostUnits) {
      list.push_back(list.back());
      continue;
    }
    while (!list.empty() && ++list.back() == kItems.size()) list.pop_back();
  }
}

// What the best list that has an item lacks, on the platform; more than any when none fits.
std::map<LootKey, int64_t> LeastMissing(const PlatformRecipe& recipe, const Inventory& inventory) {
  std::map<LootKey, int64_t> least;
  ForEachList([&](const std::vector<LootKey>& items) {
    const auto taken = TakeIngredients(recipe, items, 1);
    if (!taken) return;
    int64_t missing = 0;
    for (const auto& [key, count] : taken.GetValue()) {
      missing += std::max<int64_t>(count - inventory.Count(key), 0);
    }
    for (const LootKey& item : items) {
      const auto [known, isNew] = least.try_emplace(item, missing);
      known->second = std::min(known->second, missing);
    }
  });
  return least;
}

TEST(CraftMenus, AnEntryIsEnabledExactlyWhenThePlatformTakesSomeListWithTheItem) {
  Random random(301);
  std::map<bool, int> seen;
  for (int round = 0; round < 100 && !testing::Test::HasFailure(); ++round) {
    const bool onlyNames = round % 2 == 0;
    const Pair pair(onlyNames ? kNames : kListable.size(), random);
    LootCounts counts(pair.state.store.Snapshot()->playerLoot);
    const auto& indexed = pair.state.definitions->recipes().recipes();
    for (size_t i = 0; i < indexed.size(); ++i) {
      auto least = LeastMissing(pair.recipes[i], pair.inventory);
      for (const auto& [lootId, item] : pair.state.store.Snapshot()->playerLoot) {
        for (const auto& entry : pair.menus.MenuOf(lootId, counts)) {
          if (entry.name != indexed[i].recipe->recipeName) continue;
          SCOPED_TRACE(lootId + " in " + entry.name + ", round " + std::to_string(round));
          const auto known = least.find(KeyOf(lootId));
          const int64_t wanted = known == least.end() ? kMostUnits + 1 : known->second;
          EXPECT_EQ(entry.enabled, wanted == 0);
          int64_t missing = 0;
          for (const auto& one : counts.FindNeeds(indexed[i], item->refId).ingredients) {
            missing += one.missing;
          }
          // A slot that lists an id lacks it even where it would not go with the others.
          if (onlyNames) {
            EXPECT_EQ(missing, wanted);
          }
          ++seen[entry.enabled];
        }
      }
    }
  }
  EXPECT_TRUE(seen[true] > 300 && seen[false] > 300) << seen[true] << " " << seen[false];
}

}  // namespace
}  // namespace Kest::Host
