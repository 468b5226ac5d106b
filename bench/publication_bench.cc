// Publication of an inventory of 10,000 items, on a host that does nothing with it: one change
// beside writing the maps by hand and beside copying their bytes; the longest time that it keeps a
// module task; and the memory of all that is kept beside that of the items alone.
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "api/dispatcher.h"
#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "bench/json_peers.h"
#include "bench/slice_host.h"
#include "client/sibling_client.h"
#include "loot/calls/chest_notices.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/watched_views.h"
#include "loot/state/loot_state.h"
#include "loot/state/loot_switch.h"
#include "loot/wire/register_resources.h"

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

void Replace(const std::vector<Api::PlayerLoot>& items, PlayerLootStore* store) {
  PlayerLootStore::Replacement replacement;
  for (const Api::PlayerLoot& item : items) store->AddTo(&replacement, item);
  store->Replace(&replacement);
}

// An inventory and its publisher, on a host that does nothing.
struct Player {
  Player() { Api::RegisterLootResources(TypeRegistry::Process()); }

  // A part of the items gets another count.
  void Change(int32_t step, int32_t count) {
    for (int32_t i = 0; i < kItems; i += step) {
      Api::PlayerLoot item = MakeItem(i);
      item.count = count;
      state.store.Put(item);
    }
  }

  // As the endpoint returns it.
  WithJson<std::shared_ptr<const Api::PlayerLootItems>> GetMap() {
    const auto map = state.store.Snapshot();
    return {{map, &map->playerLoot}, publisher.PresentText()->ShareItems()};
  }

  Bench::SliceHost host;
  const std::string name = "vwm-be-bench";
  SiblingClient client{host.Services(), host.Module(), name};
  const LootSwitch loot{true, true};
  LootState state;
  WatchedViews views{client, state, loot};
  ChestNotices notices{client};
  LootPublisher publisher{host.Module(), client, {state.store, state.definitions, notices, views}};
};

// What holding the items costs after two publications, in multiples of a plain list of them.
double MemoryRatio() {
  const size_t atStart = Bench::LiveBytes();
  std::vector<Api::PlayerLoot> items = MakeItems();
  const size_t once = Bench::LiveBytes() - atStart;
  const size_t before = Bench::LiveBytes();
  Player player;
  Replace(items, &player.state.store);
  player.publisher.Publish();
  items[0].count = 20;
  Replace(items, &player.state.store);
  player.publisher.Publish();
  return static_cast<double>(Bench::LiveBytes() - before) / static_cast<double>(once);
}

// One item changes, and with it the length of its JSON.
void AddChangeRows(Bench::Table& table) {
  Player player;
  Replace(MakeItems(), &player.state.store);
  player.publisher.Publish();
  Api::PlayerLoot item = MakeItem(kItems / 2);
  const auto publish = [&] {
    item.count = 21 - item.count;
    player.state.store.Put(item);
    const size_t before = player.host.Published();
    player.publisher.Publish();
    Bench::Require(player.host.Published() - before > 10'000'000, "the maps were not published");
  };
  std::unordered_map<std::string, Api::PlayerLoot> items;
  for (Api::PlayerLoot& each : MakeItems()) items.emplace(each.lootId, std::move(each));
  const auto writeByHand = [&] {
    for (int map = 0; map < 2; ++map) {
      rapidjson::StringBuffer buffer;
      Bench::WriteRapidJson(items, &buffer);
      Bench::Keep(buffer.GetString());
    }
  };
  const std::string json(player.publisher.PresentText()->Items());
  std::string copies[2] = {json, json};
  const auto copy = [&] {
    for (std::string& each : copies) {
      std::memcpy(each.data(), json.data(), json.size());
      Bench::Keep(each.data());
    }
  };
  table.Compare("one of 10,000 items changed, item and maps published", publish,
                "RapidJSON Writer, both maps", writeByHand, Bench::AtLeast(20));
  table.Compare("the same", publish, "memory copy of both maps", copy, Bench::AtMost(2));
  const auto publishHeld = [&] {
    const SharedText held = player.publisher.PresentText()->ShareItems();
    publish();
  };
  table.Compare("the same while a response holds the map", publishHeld, "memory copy of both maps",
                copy, Bench::AtMost(2));
}

// Nothing changes between two requests.
void AddGetRow(Bench::Table& table) {
  Player player;
  Replace(MakeItems(), &player.state.store);
  player.publisher.Publish();
  const std::string json(player.publisher.PresentText()->Items());
  Dispatcher api(TypeRegistry::Process());
  api.Route(HttpMethod::kGet, "/map", "GetMap", &player, &Player::GetMap);
  const auto get = [&] {
    const Response response = api.Handle({"GET", "/map", {}, {}, {}, {}});
    Bench::Require(response.Body().size() == json.size(), "another text");
  };
  table.Compare(
      "the map of 10,000 items returned again", get, "copy of its JSON",
      [&] { Bench::Keep(std::string(json).data()); }, Bench::AtMost(1.25));
}

void AddSliceRows(Bench::Table& table) {
  const auto parse = [] {
    rapidjson::Document document;
    document.Parse<Bench::kPeerFlags>(Bench::SampleText().c_str());
    Bench::Require(!document.HasParseError(), "not parsed");
  };
  constexpr const char* kPeer = "RapidJSON Document of 4.5 MB";
  const auto publishAll = [] {
    Player player;
    Replace(MakeItems(), &player.state.store);
    return player.host.LongestSlice([&] { player.publisher.Publish(); });
  };
  table.Compare("longest slice, 10,000 new items published", Bench::Side::Measured(publishAll),
                kPeer, parse, Bench::AtMost(0.31));
  Player player;
  Replace(MakeItems(), &player.state.store);
  player.publisher.Publish();
  int32_t count = 1;
  const auto publishChanged = [&] {
    player.Change(1, ++count);
    return player.host.LongestSlice([&] { player.publisher.Publish(); });
  };
  table.Compare("longest slice, 10,000 changed items published",
                Bench::Side::Measured(publishChanged), kPeer, parse, Bench::AtMost(0.31));
}

void AddRows(Bench::Table& table) {
  AddChangeRows(table);
  AddGetRow(table);
  AddSliceRows(table);
  table.Value("store, snapshot and kept JSON: memory", MemoryRatio(), "x the items", 2.5);
}

}  // namespace
}  // namespace Kest::Client::Loot

void Kest::Bench::AddRows(Table& table) {
  Client::Loot::AddRows(table);
}
