#include "loot/state/map_text.h"

#include <gtest/gtest.h>

#include <random>

#include "loot/wire/register_resources.h"
#include "tests/loot/replace_items.h"
#include "tests/loot/written_json.h"

namespace Kest::Client::Loot {
namespace {

// A store and its text, with changes drawn from a fixed seed.
class MapTextTest : public ::testing::Test {
 protected:
  MapTextTest() { Api::RegisterLootResources(TypeRegistry::Process()); }

  size_t Below(size_t end) { return random_() % end; }

  // Of few ids, so that items come again; their texts are often as long as before.
  Api::PlayerLoot AnyItem() {
    Api::PlayerLoot item;
    item.lootId = "item \"" + std::to_string(Below(60)) + "\"";
    item.count = static_cast<int32_t>(Below(Below(3) == 0 ? 100'000 : 10));
    item.tags = std::string(Below(20) == 0 ? Below(3'000) : 3, 'x');
    return item;
  }
  void ChangeAny() {
    switch (Below(12)) {
      case 0:
        return ReplaceItems(std::vector<Api::PlayerLoot>(Below(2) * Below(70), AnyItem()), &store_);
      case 1: {
        std::vector<Api::PlayerLoot> items(Below(70));
        for (Api::PlayerLoot& item : items) item = AnyItem();
        return ReplaceItems(items, &store_);
      }
      case 2:  // the same in another order
        return ReplaceReversed();
      case 3:
        return store_.EditAll([this](Api::PlayerLoot& item) { item.isNew = Below(4) == 0; });
      case 4:
      case 5:
      case 6:
        return store_.Remove(AnyItem().lootId);
      default:
        return store_.Put(AnyItem());
    }
  }
  void ReplaceReversed() {
    std::vector<Api::PlayerLoot> items;
    for (const auto& [lootId, item] : store_.Snapshot()->playerLoot) items.push_back(*item);
    ReplaceItems({items.rbegin(), items.rend()}, &store_);
  }
  // As a publication does it. A pause may give up, and the work is done again.
  PlayerLootChanges Publish() {
    int interruptions = 3;
    Pace pace(1 + Below(40), [&] { return Below(9) != 0 || interruptions-- <= 0; });
    PlayerLootChanges changes;
    ItemTexts made;
    MapText::Draft draft;
    while (!TryPrepare(pace, &changes, &made, &draft)) continue;
    store_.PrepareToMark();
    store_.MarkPublished(&changes);
    text_.Keep(std::move(draft), store_.Snapshot()->version);
    return changes;
  }
  bool TryPrepare(Pace& pace, PlayerLootChanges* changes, ItemTexts* made, MapText::Draft* draft) {
    if (!store_.FindChanges(pace, changes)) return false;
    made->Rewind();
    for (const auto& written : changes->written) {
      if (!made->HasNext(*written.item)) made->Add(written.item);
    }
    return text_.Prepare(pace, store_.items(), *made, draft);
  }

  std::mt19937 random_{301};
  PlayerLootStore store_;
  MapText text_;
};

TEST_F(MapTextTest, IsAlwaysWhatWritingTheStoreGives) {
  store_.Put(AnyItem());
  SharedText shared;
  std::string asShared;
  for (int round = 0; round < 1'500; ++round) {
    SCOPED_TRACE(round);
    if (Below(4) == 0) {
      shared = Below(2) == 0 ? text_.ShareItems() : text_.ShareVersioned();
      asShared = shared.text;
    }
    for (size_t change = Below(6); change > 0; --change) ChangeAny();
    const PlayerLootChanges changes = Publish();
    const auto store = store_.Snapshot();
    ASSERT_EQ(text_.Items(), Written(store->playerLoot));
    ASSERT_EQ(text_.Versioned(), Written(*store));
    ASSERT_EQ(shared.text, asShared);
    size_t place = 0;
    for (const auto& written : changes.written) {
      ASSERT_EQ(text_.Item(*written.item, &place), Written(*written.item));
    }
  }
  EXPECT_GT(store_.Snapshot()->version, 1'000);
}

}  // namespace
}  // namespace Kest::Client::Loot
