// Rebuilding the inventory after a change of the definitions: the recipes are indexed again and
// 10,000 items are made, each looked up in 2,000 recipes; beside a plain copy of the same items.
#include <string>
#include <vector>

#include "bench/comparison.h"
#include "bench/json_data.h"
#include "loot/state/loot_inventory.h"

namespace Kest::Client::Loot {
namespace {

constexpr size_t kRecords = 10'000;
constexpr size_t kQueries = 300;
constexpr size_t kNamesPerQuery = 40;

std::string QueryText(size_t number) {
  return "tag == " + std::to_string(number % kQueries);
}

BindingProperty MakeQueryResults(const std::vector<SVDS::LootItemClientDTO>& items) {
  BindingProperty results = BindingProperty::Structure();
  for (size_t i = 0; i < kQueries; ++i) {
    BindingProperty& names = results.GetOrAddMember(QueryText(i));
    for (size_t n = 0; n < kNamesPerQuery; ++n) {
      names.Append().SetString(items[(i * kNamesPerQuery + n) % items.size()].lootName);
    }
  }
  return results;
}

// Every definition is listed by a query or two, and every query is asked by several recipes.
struct Inventory {
  Inventory() {
    const Bench::Definitions& sample = Bench::SampleDefinitions();
    const auto& items = sample.lootItemList.lootItems;
    auto recipes = sample.recipeList.recipes;
    size_t slots = 0;
    for (auto& recipe : recipes) {
      for (auto& slot : recipe.slots) slot.query = QueryText(slots++);
    }
    for (size_t i = 0; i < kRecords; ++i) {
      records.push_back({items[i % items.size()].lootName, std::to_string(i), 1, -1});
    }
    lists = {MakeLootItems(items), MakeShared(std::move(recipes)),
             MakeShared(MakeQueryResults(items))};
  }
  void Rebuild() {
    inventory.Replace(records, std::make_shared<const LootDefinitions>(lists)).Continue();
  }

  LootState state;
  LootInventory inventory{state, kRecords};
  std::vector<SVDS::PlayerLootDTO> records;
  LootDefinitions::Lists lists;
};

}  // namespace
}  // namespace Kest::Client::Loot

void Kest::Bench::AddRows(Table& table) {
  Client::Loot::Inventory inventory;
  inventory.Rebuild();
  std::unordered_map<std::string, PlayerLoot> items;
  size_t offers = 0;
  for (const auto& [lootId, item] : inventory.state.store.Snapshot()->playerLoot) {
    items.emplace(lootId, *item);
    offers += item->disenchantLootName.empty() ? 0 : 1;
  }
  Require(items.size() == Client::Loot::kRecords && offers >= items.size() / 2,
          "the recipes were not found");
  table.Compare(
      "inventory of 10,000 items made again", [&] { inventory.Rebuild(); }, "copy of the items",
      [&] { Keep(std::unordered_map(items)); }, AtMost(5));
}
