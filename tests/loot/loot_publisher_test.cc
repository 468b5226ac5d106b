// A publication with a pause after every item or two, while another task looks at what is returned
// and changes items in each of its turns.
#include "loot/calls/loot_publisher.h"

#include <map>
#include <random>

#include "loot/state/loot_state.h"
#include "loot/state/loot_switch.h"
#include "loot/wire/register_resources.h"
#include "tests/loot/calls_fixture.h"
#include "tests/loot/written_json.h"

namespace Kest::Client::Loot {
namespace {

class LootPublisherTest : public CallsTest {
 protected:
  LootPublisherTest() { Api::RegisterLootResources(TypeRegistry::Process()); }

  size_t Below(size_t end) { return random_() % end; }
  void ChangeAny() {
    Api::PlayerLoot item;
    item.lootId = Below(8) == 0 ? "CHEST_new_player" : "item" + std::to_string(Below(30));
    item.count = static_cast<int32_t>(Below(2) == 0 ? ++highest_ : Below(1'000));
    switch (Below(8)) {
      case 0:
        return state_.store.Remove(item.lootId);
      case 1:
        return state_.store.EditAll([](Api::PlayerLoot& each) { ++each.count; });
      default:
        return state_.store.Put(item);
    }
  }
  // What the endpoints return in a pause is the present store.
  void Look() {
    const MapText* const text = publisher_.PresentText();
    if (text == nullptr) return;
    ++looks_;
    EXPECT_EQ(text->Items(), Written(state_.store.items()));
    EXPECT_EQ(text->Versioned(), Written(*state_.store.Snapshot()));
  }
  // Changes something in some turns, and acknowledges the chests in one of the last publication.
  void Meddle() {
    for (int turn = 0; turn < 12; ++turn) {
      Look();
      for (size_t change = Below(5) == 0 ? Below(20) : 0; change > 0; --change) ChangeAny();
      if (Below(4) == 0) publisher_.Request();
      EXPECT_TRUE(module_.LetOthersRun("turn"));
    }
    publisher_.Request();
    for (size_t turn = Below(60); turn > 0; --turn) EXPECT_TRUE(module_.LetOthersRun("turn"));
    notices_.Acknowledge("CHEST_new_player");
  }
  // The items as their events have left them are those of each map.
  void Follow() {
    constexpr std::string_view kItem = "/tav-loot/v1/player-loot/";
    for (const Testing::PublishedEvent& event : host_.PublishedEvents()) {
      if (event.path.starts_with(kItem)) {
        const std::string lootId = event.path.substr(kItem.size());
        EXPECT_EQ(event.type == "Create", !known_.contains(lootId)) << event.path;
        EXPECT_NE(event.json, known_[lootId]) << event.path;
        known_[lootId] = event.json;
        if (event.type == "Delete") known_.erase(lootId);
      } else if (event.path == "/tav-loot/v1/player-loot-map") {
        size_t bytes = 2;  // braces, names, commas
        for (const auto& [lootId, json] : known_) {
          EXPECT_NE(event.json.find("\"" + lootId + "\":" + json), std::string::npos) << lootId;
          bytes += lootId.size() + json.size() + 4;
        }
        EXPECT_EQ(event.json.size(), bytes - (known_.empty() ? 0 : 1));
        map_ = event.json;
      } else if (event.path == "/tav-loot/v2/player-loot-map") {
        ++version_;
        EXPECT_EQ(event.json,
                  "{\"version\":" + std::to_string(version_) + ",\"playerLoot\":" + map_ + "}");
      } else {
        notifications_ = event.json;
      }
    }
    host_.ForgetPublished();
  }

  std::mt19937 random_{301};
  int32_t highest_ = 0;
  const LootSwitch loot_{true, true};
  LootState state_;
  WatchedViews views_{client_, state_, loot_};
  ChestNotices notices_{client_};
  LootPublisher publisher_{
      module_, client_, {state_.store, state_.definitions, notices_, views_}, 2};
  std::map<std::string, std::string> known_;  // JSON by loot id
  std::string map_;
  std::string notifications_ = "[]";
  int64_t version_ = 0;
  int looks_ = 0;
};

TEST_F(LootPublisherTest, WhatIsReturnedAndPublishedBetweenItsPausesIsComplete) {
  for (int round = 0; round < 200 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    host_.RunTask([this] { Meddle(); });
    Follow();
    Look();
    EXPECT_FALSE(state_.store.HasChanges());
    EXPECT_EQ(version_, state_.store.Snapshot()->version);
    EXPECT_EQ(notifications_, Written(notices_.List()));
  }
  EXPECT_GT(looks_, 500);
}

}  // namespace
}  // namespace Kest::Client::Loot
