#include "loot/state/inventory_replacement.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace Kest::Client::Loot {
namespace {

// What replaces the inventory in parts meets any change of what items are made of in between.
class InventoryReplacementTest : public ::testing::Test {
 protected:
  InventoryReplacementTest() {
    std::vector<SVDS::LootItemClientDTO> items(2);
    items[0].lootName = "SHARD";
    items[0].type = "CHAMPION";
    items[0].storeItemId = 1;
    items[1].lootName = "LOGO";
    items[1].type = "TOURNAMENTLOGO";
    items[1].storeItemId = 7;
    LootDefinitions::Lists lists = LootDefinitions().lists();
    lists.items = MakeLootItems(std::move(items));
    definitions_ = std::make_shared<const LootDefinitions>(std::move(lists));
  }
  size_t Below(size_t end) { return random_() % end; }

  std::vector<SVDS::PlayerLootDTO> AnyRecords() {
    constexpr const char* kNames[] = {"SHARD", "LOGO", "unknown"};
    std::vector<SVDS::PlayerLootDTO> records(Below(12));
    for (SVDS::PlayerLootDTO& record : records) {
      record = {kNames[Below(3)], std::to_string(Below(3)), static_cast<int32_t>(Below(3)), -1};
    }
    return records;
  }
  void ChangeAny() {
    Api::CollectionsChampionMinimal champion{.id = 1, .ownership = {}};
    Api::LootDataGdsResource file;
    file.LootItems.resize(1);
    switch (Below(12)) {
      case 0:
        champion.ownership.owned = Below(2) == 0;
        state_.collections.ReplaceSkins({{1, 1000, std::to_string(Below(3)), {}, "", ""}});
        return state_.collections.ReplaceChampions({champion});
      case 1:
        return state_.collections.AddTournamentLogo(7);
      case 2:
        return state_.collections.ClearTournamentLogos();
      case 3:
        file.LootItems[0].id = "LOGO-1";
        file.LootItems[0].name = std::to_string(Below(3));
        return state_.gameData.ReplaceLoot(std::move(file));
      case 4:
        return state_.store.Remove("LOGO-1");
      case 5:
        return Publish();
      default:
        return;
    }
  }
  void Publish() {
    PlayerLootChanges changes;
    Pace pace;
    EXPECT_TRUE(state_.store.FindChanges(pace, &changes));
    state_.store.PrepareToMark();
    for (const auto& written : changes.written) {
      EXPECT_FALSE(published_.contains(written.item->lootId) &&
                   published_[written.item->lootId] == *written.item)
          << "equal items share their copies";
    }
    state_.store.MarkPublished(&changes);
    published_.clear();
    for (const auto& [lootId, item] : state_.store.items()) published_[lootId] = *item;
  }

  std::mt19937 random_{301};
  LootState state_;
  LootDefinitionsPointer definitions_;
  std::map<std::string, Api::PlayerLoot> published_;
};

TEST_F(InventoryReplacementTest, TheItemsAreThoseOfTheLastMoment) {
  for (int round = 0; round < 400 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const std::vector<SVDS::PlayerLootDTO> records = AnyRecords();
    InventoryReplacement inParts(state_, records, definitions_, 1 + Below(3));
    size_t parts = 1;
    for (; !inParts.Continue(); ++parts) ChangeAny();
    while (!inParts.FreeSome()) continue;
    EXPECT_LE(parts, 2 * (records.size() + 1) + 1) << "made twice, then in one go";
    const std::shared_ptr<const Api::PlayerLootMap> made = state_.store.Snapshot();
    if (Below(2) == 0) Publish();
    InventoryReplacement(state_, records, definitions_, records.size()).Continue();
    ASSERT_EQ(made->playerLoot.size(), state_.store.items().size());
    auto same = state_.store.items().begin();
    for (const auto& [lootId, item] : made->playerLoot) {
      EXPECT_EQ(*item, *same->second) << lootId;
      ++same;
    }
    if (Below(2) == 0) Publish();
  }
}

}  // namespace
}  // namespace Kest::Client::Loot
