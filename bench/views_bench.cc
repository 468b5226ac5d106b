// Watched views: 1,500 shards, each with its list of recipes and its menu watched, and one recipe
// of three slots that takes them all. What a publication costs when nothing has changed, when one
// shard has, and what watching costs in memory.
#include <string>
#include <vector>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "binding/types/type_registry.h"
#include "client/sibling_client.h"
#include "loot/calls/watched_views.h"
#include "loot/state/loot_inventory.h"
#include "loot/wire/register_resources.h"

namespace Kest::Client::Loot {
namespace {

constexpr int kShards = 1500;

std::string ShardName(int i) {
  return "CHAMPION_SKIN_RENTAL_" + std::to_string(i);
}

struct Player {
  Player() {
    Api::RegisterLootResources(TypeRegistry::Process());
    std::vector<SVDS::LootItemClientDTO> items(kShards);
    BindingProperty queries = BindingProperty::Structure();
    BindingProperty& shards = queries.GetOrAddMember("shards");
    for (int i = 0; i < kShards; ++i) {
      items[static_cast<size_t>(i)].lootName = ShardName(i);
      shards.Append().SetString(ShardName(i));
      records.push_back({ShardName(i), "", 2, -1});
    }
    SVDS::LootSvdsRecipeClientDTO recipe;
    recipe.recipeName = "REROLL";
    recipe.slots = {{1, "shards", "1"}, {2, "shards", "1"}, {3, "shards", "1"}};
    definitions = std::make_shared<const LootDefinitions>(
        LootDefinitions::Lists{MakeLootItems(std::move(items)), MakeShared(std::vector{recipe}),
                               MakeShared(std::move(queries))});
    inventory.Replace(records, definitions).Continue();
    Publish();
    const size_t before = Bench::LiveBytes();
    for (int i = 0; i < kShards; ++i) {
      views.ReadRecipes(ShardName(i));
      views.ReadContextMenu(ShardName(i));
    }
    Publish();
    watchedBytes = Bench::LiveBytes() - before;
  }
  size_t Publish() {
    PlayerLootChanges changes;
    Pace pace;
    Bench::Require(state.store.FindChanges(pace, &changes), "given up");
    std::vector<PublicationStep> steps;
    WatchedViews::Draft draft = views.FindChanges(changes, &steps);
    state.store.PrepareToMark();
    state.store.MarkPublished(&changes);
    views.Keep(std::move(draft));
    return steps.size();
  }

  EntryGate gate;
  RuntimeCounters counters;
  HostServices services{gate, counters};
  AppModule module{services};
  const std::string name = "vwm-be-bench";
  SiblingClient client{services, module, name};
  const LootSwitch loot{true, true};
  LootState state;
  LootInventory inventory{state, kShards};
  WatchedViews views{client, state, loot};
  std::vector<SVDS::PlayerLootDTO> records;
  LootDefinitionsPointer definitions;
  size_t watchedBytes = 0;
};

}  // namespace
}  // namespace Kest::Client::Loot

void Kest::Bench::AddRows(Table& table) {
  Client::Loot::Player player;
  const auto retrieveTheSame = [&] {
    player.inventory.Replace(player.records, player.definitions).Continue();
  };
  const auto publishNothing = [&] { Require(player.Publish() == 0, "published"); };
  table.Time("watched views, nothing changed", Side::Prepared(retrieveTheSame, publishNothing),
             1e6);
  const auto changeOne = [&] {
    player.inventory.ApplyDelta(player.records[7], 1);
    player.Publish();
  };
  table.Time("watched views, one shard changed", changeOne, 25e6);
  table.Value("watched views: memory", static_cast<double>(player.watchedBytes) / 1e6, " MB", 5);
}
