#include "loot/player_loot_store.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace Kest::Client::Loot {
namespace {

using Plain = std::map<std::string, Api::PlayerLoot>;

Api::PlayerLoot Item(const std::string& lootId, int32_t count) {
  Api::PlayerLoot item;
  item.lootId = lootId;
  item.count = count;
  return item;
}

Plain PlainItems(const PlayerLootStore& store) {
  Plain plain;
  for (const auto& [lootId, item] : store.items()) plain.emplace(lootId, *item);
  return plain;
}

// A follower of the published resources: applies changes to what it knows, and refuses those that
// tell nothing new or are of the wrong kind.
void Follow(const PlayerLootChanges& changes, Plain* known) {
  for (const auto& [item, created] : changes.written) {
    const auto held = known->find(item->lootId);
    ASSERT_EQ(created, held == known->end()) << item->lootId;
    if (!created) {
      ASSERT_FALSE(held->second == *item) << item->lootId << " was published already";
    }
    (*known)[item->lootId] = *item;
  }
  for (const std::string& lootId : changes.removed) ASSERT_EQ(known->erase(lootId), 1u) << lootId;
}

// Does the same to the store and to a plain map.
void ChangeAtRandom(std::mt19937& random, PlayerLootStore* store, Plain* plain) {
  const auto number = [&](uint32_t end) { return static_cast<int32_t>(random() % end); };
  const auto item = [&] { return Item("item" + std::to_string(number(12)), number(3)); };
  const int32_t action = number(5);
  if (action < 2) {
    const Api::PlayerLoot put = item();
    store->Put(put);
    (*plain)[put.lootId] = put;
  } else if (action == 2) {
    const std::string lootId = item().lootId;
    store->Remove(lootId);
    plain->erase(lootId);
  } else if (action == 3) {
    const int32_t count = number(3);
    const auto edit = [count](Api::PlayerLoot& held) {
      if (held.count == count) held.isNew = !held.isNew;
    };
    store->EditAll(edit);
    for (auto& [lootId, held] : *plain) edit(held);
  } else {
    std::vector<Api::PlayerLoot> items(static_cast<size_t>(number(15)));
    plain->clear();
    for (Api::PlayerLoot& held : items) {
      held = item();
      (*plain)[held.lootId] = held;
    }
    store->Replace(items);
  }
}

TEST(PlayerLootStore, WhatIsPublishedAddsUpToTheStoreAndTellsNothingTwice) {
  std::mt19937 random(301);
  PlayerLootStore store;
  Plain plain;
  Plain known;
  int64_t version = 0;
  for (int round = 0; round < 4000; ++round) {
    SCOPED_TRACE(round);
    for (uint32_t steps = random() % 4; steps > 0; --steps) ChangeAtRandom(random, &store, &plain);
    ASSERT_EQ(PlainItems(store), plain);
    const bool differs = plain != known;
    const PlayerLootChanges changes = store.TakeChanges();
    auto written = changes.written.begin();
    for (const auto& [lootId, item] : store.items()) {
      if (written != changes.written.end() && written->item == item) ++written;
    }
    ASSERT_EQ(written, changes.written.end()) << "not in the order of the store";
    ASSERT_NO_FATAL_FAILURE(Follow(changes, &known));
    ASSERT_EQ(known, plain);
    ASSERT_EQ(changes.Any(), differs);
    version += differs ? 1 : 0;
    ASSERT_EQ(store.map().version, version);
  }
  std::vector<Api::PlayerLoot> copies;
  for (const auto& [lootId, item] : plain) copies.push_back(item);
  const Api::PlayerLootItems before = store.items();
  store.Replace(copies);
  EXPECT_EQ(store.items(), before) << "equal items share their published copies";
}

}  // namespace
}  // namespace Kest::Client::Loot
