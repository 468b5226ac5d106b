// Publication: finding the one item of 10,000 that changed, beside a comparison of all items with
// their published copies field by field; and the memory of store and snapshot beside that of the
// items alone.
#include <malloc.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "bench/comparison.h"
#include "loot/state/player_loot_store.h"

namespace Kest::Client::Loot {
namespace {

constexpr int32_t kItems = 10'000;

// An item as assembly makes it, most of its texts filled.
Api::PlayerLoot MakeItem(int32_t i) {
  const std::string number = std::to_string(i);
  Api::PlayerLoot item;
  item.lootName = "CHAMPION_SKIN_RENTAL_" + number;
  item.lootId = item.lootName;
  item.localizedName = "Wanderer of the Seventh Shore " + number;
  item.localizedDescription = "Lets you walk in the colours of shore number " + number + ".";
  item.itemDesc = "Seventh Shore " + number;
  item.displayCategories = "SKIN";
  item.rarity = "EPIC";
  item.type = "SKIN_RENTAL";
  item.asset = "shard_" + number;
  item.tilePath = "/fe/tav-loot/assets/loot_item_icons/shard_" + number + ".png";
  item.splashPath = item.tilePath;
  item.upgradeLootName = "CHAMPION_SKIN_" + number;
  item.upgradeEssenceName = "CURRENCY_cosmetic";
  item.disenchantLootName = "CURRENCY_cosmetic";
  item.count = 1;
  item.storeItemId = i;
  return item;
}

std::vector<Api::PlayerLoot> MakeItems() {
  std::vector<Api::PlayerLoot> items;
  items.reserve(kItems);
  for (int32_t i = 0; i < kItems; ++i) items.push_back(MakeItem(i));
  return items;
}

void MarkPublished(PlayerLootStore* store) {
  PlayerLootChanges changes = store->FindChanges();
  store->MarkPublished(&changes);
}

size_t LiveBytes() {
  return mallinfo2().uordblks + mallinfo2().hblkhd;
}

// What holding the items costs after two publications, in multiples of a plain list of them.
double MemoryRatio() {
  const size_t atStart = LiveBytes();
  std::vector<Api::PlayerLoot> items = MakeItems();
  const size_t once = LiveBytes() - atStart;
  PlayerLootStore store;
  const size_t before = LiveBytes();
  store.Replace(items);
  MarkPublished(&store);
  items[0].count = 2;
  store.Replace(items);
  MarkPublished(&store);
  return static_cast<double>(LiveBytes() - before) / static_cast<double>(once);
}

// How many items differ from their published copies, which follow.
size_t CompareAll(const std::unordered_map<std::string, Api::PlayerLoot>& current,
                  std::unordered_map<std::string, Api::PlayerLoot>* published) {
  size_t changes = 0;
  for (const auto& [lootId, candidate] : current) {
    Api::PlayerLoot& copy = (*published)[lootId];
    if (copy == candidate) continue;
    copy = candidate;
    ++changes;
  }
  return changes;
}

void AddRows(Bench::Table& table) {
  PlayerLootStore store;
  store.Replace(MakeItems());
  MarkPublished(&store);
  std::unordered_map<std::string, Api::PlayerLoot> current;
  for (Api::PlayerLoot& item : MakeItems()) current.emplace(item.lootId, std::move(item));
  std::unordered_map<std::string, Api::PlayerLoot> published = current;
  Api::PlayerLoot item = MakeItem(kItems / 2);
  const auto findMarked = [&] {
    ++item.count;
    store.Put(item);
    PlayerLootChanges changes = store.FindChanges();
    Bench::Require(changes.written.size() == 1, "the change was not found");
    store.MarkPublished(&changes);
  };
  const auto compareAll = [&] {
    ++item.count;
    current[item.lootId] = item;
    Bench::Require(CompareAll(current, &published) == 1, "the change was not found");
  };
  table.Compare("one change in 10,000 items found", findMarked, "comparison of all items",
                compareAll, Bench::AtLeast(20));
  table.Value("store and snapshot: memory", MemoryRatio(), "x the items", 2.2);
}

}  // namespace
}  // namespace Kest::Client::Loot

void Kest::Bench::AddRows(Table& table) {
  Client::Loot::AddRows(table);
}
