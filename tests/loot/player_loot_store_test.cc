#include "loot/state/player_loot_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/loot/replace_items.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Api::PlayerLoot Item(const std::string& lootId, int32_t count) {
  Api::PlayerLoot item;
  item.lootId = lootId;
  item.count = count;
  return item;
}

// "+id", "=id" and "-id" for what was created, updated and removed, in order.
std::vector<std::string> Taken(PlayerLootStore* store) {
  PlayerLootChanges changes;
  Pace pace;
  EXPECT_TRUE(store->FindChanges(pace, &changes));
  std::vector<std::string> texts;
  for (const auto& written : changes.written) {
    texts.push_back((written.isCreated ? "+" : "=") + written.item->lootId);
  }
  for (const auto& item : changes.removed) texts.push_back("-" + item->lootId);
  EXPECT_EQ(changes.Any(), !texts.empty());
  store->MarkPublished(&changes);
  return texts;
}

TEST(PlayerLootStore, ReportsWhatDiffersFromWhatWasReportedInTheOrderOfTheStore) {
  PlayerLootStore store;
  for (const char* id : {"item9", "item1", "item5", "item7", "item3"}) store.Put(Item(id, 1));
  store.Remove("item7");  // never published, so its end is no news
  std::vector<std::string> inOrder;
  for (const auto& [lootId, item] : store.Snapshot()->playerLoot) inOrder.push_back("+" + lootId);
  EXPECT_EQ(Taken(&store), inOrder);
  store.Put(Item("item1", 2));
  store.Remove("item3");
  store.Put(Item("item1", 1));  // back as they were published
  store.Put(Item("item3", 1));
  EXPECT_THAT(Taken(&store), IsEmpty());
  store.EditAll([](Api::PlayerLoot& item) { item.isNew = item.lootId == "item5"; });
  EXPECT_THAT(Taken(&store), ElementsAre("=item5"));
  const Api::PlayerLootItems before = store.Snapshot()->playerLoot;
  ReplaceItems({Item("item1", 1), Item("item9", 2)}, &store);
  EXPECT_EQ(store.Snapshot()->playerLoot.at("item1"), before.at("item1"))
      << "equal items share their copies";
  EXPECT_THAT(Taken(&store), ::testing::UnorderedElementsAre("=item9", "-item3", "-item5"));
  EXPECT_EQ(store.Snapshot()->version, 3);
}

}  // namespace
}  // namespace Kest::Client::Loot
