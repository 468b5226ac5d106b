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

void ChangeAtRandom(std::mt19937& random, PlayerLootStore* store, Plain* plain) {
  const auto number = [&](int32_t end) { return static_cast<int32_t>(random() % end); };
  const auto id = [&] { return "item" + std::to_string(number(12)); };
  switch (number(5)) {
    case 0:
    case 1: {
      const Api::PlayerLoot item = Item(id(), number(3));
      store->Put(item);
      (*plain)[item.lootId] = item;
      break;
    }
    case 2: {
      const std::string lootId = id();
      store->Remove(lootId);
      plain->erase(lootId);
      break;
    }
    case 3: {
      const int32_t match = number(3);
      const auto edit = [match](Api::PlayerLoot& item) {
        if (item.count == match) item.isNew = !item.isNew;
      };
      store->EditAll(edit);
      for (auto& [lootId, item] : *plain) edit(item);
      break;
    }
    default: {
      std::vector<Api::PlayerLoot> items;
      plain->clear();
      for (int32_t left = number(15); left > 0; --left) {
        items.push_back(Item(id(), number(2)));
        (*plain)[items.back().lootId] = items.back();
      }
      store->Replace(std::move(items));
    }
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
    ASSERT_NO_FATAL_FAILURE(Follow(changes, &known));
    ASSERT_EQ(known, plain);
    ASSERT_EQ(changes.Any(), differs);
    version += differs ? 1 : 0;
    ASSERT_EQ(store.map().version, version);
  }
}

TEST(PlayerLootStore, ChangesComeInTheOrderOfTheStore) {
  PlayerLootStore store;
  for (int i = 0; i < 100; ++i) store.Put(Item("item" + std::to_string(i), 1));
  std::vector<std::string> published;
  for (const auto& change : store.TakeChanges().written) published.push_back(change.item->lootId);
  std::vector<std::string> stored;
  for (const auto& [lootId, item] : store.items()) stored.push_back(lootId);
  EXPECT_EQ(published, stored);
}

TEST(PlayerLootStore, AnEqualInventorySharesItsPublishedCopies) {
  PlayerLootStore store;
  store.Replace({Item("a", 1), Item("b", 2)});
  ASSERT_TRUE(store.TakeChanges().Any());
  const Api::PlayerLootPointer before = store.Find("a");
  store.Replace({Item("b", 2), Item("a", 1)});
  EXPECT_EQ(store.Find("a"), before);  // the very copy, not one of the same content
  EXPECT_FALSE(store.TakeChanges().Any());
}

}  // namespace
}  // namespace Kest::Client::Loot
