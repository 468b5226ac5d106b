// A retrieval: what it costs the module's tasks, beside all of its work, and the longest time for
// which it keeps a task, beside RapidJSON's reading of the response.
#include <rapidjson/document.h>

#include <string>

#include "bench/comparison.h"
#include "bench/json_data.h"
#include "binding/json/json_adapter.h"
#include "loot/state/loot_inventory.h"

namespace Kest::Bench {
namespace {

using namespace Client::Loot;

// What the thread that brings the response makes of it.
struct Received {
  std::vector<SVDS::PlayerLootDTO> records;
  LootDefinitionsPointer definitions;
};

Received Receive(size_t records) {
  ConversionContext context(LootRegistry());
  Definitions all;
  ReadJsonValue(context, "<result>", SampleText(), &all);
  Require(context.Ok(), "the response was not read");
  // Of definitions that exist, no two with one id.
  const auto& items = all.lootItemList.lootItems;
  all.playerLoot.clear();
  for (size_t i = 0; i < records; ++i) {
    all.playerLoot.push_back({items[i % items.size()].lootName, std::to_string(i), 1, -1});
  }
  return {std::move(all.playerLoot), std::make_shared<const LootDefinitions>(LootDefinitions::Lists{
                                         MakeLootItems(std::move(all.lootItemList.lootItems)),
                                         MakeShared(std::move(all.recipeList.recipes)),
                                         MakeShared(std::move(all.queryResult.queryToLootNames))})};
}

// The player's state, which holds the items of the last retrieval. A new one is used in parts.
class Player {
 public:
  // Returns the nanoseconds that the tasks took; `*longest` grows to those of the longest part.
  double Use(Received received, double* longest) {
    // The thread of the next response frees these.
    const LootDefinitionsPointer retired = state_.definitions;
    auto replacement = std::make_unique<InventoryReplacement>(
        inventory_.Replace(std::move(received.records), std::move(received.definitions)));
    double sum = 0;
    for (bool isLast = false, isReplaced = false; !isLast;) {
      const double start = CpuNanoseconds();
      isReplaced = isReplaced || replacement->Continue();
      isLast = isReplaced && replacement->FreeSome();
      if (isLast) replacement.reset();
      const double part = CpuNanoseconds() - start;
      sum += part;
      *longest = std::max(*longest, part);
    }
    Require(!state_.store.items().empty(), "nothing was replaced");
    return sum;
  }
  void MarkPublished() {
    PlayerLootChanges changes;
    Pace pace;
    Require(state_.store.FindChanges(pace, &changes), "given up");
    state_.store.PrepareToMark();
    state_.store.MarkPublished(&changes);
  }

 private:
  LootState state_;
  LootInventory inventory_{state_};
};

}  // namespace

void AddRows(Table& table) {
  Player player;
  double longest = 0;
  const auto tasks = Side::Measured([&] {
    const double sum = player.Use(Receive(5'000), &longest);
    player.MarkPublished();
    return sum;
  });
  const auto everything = Side::Measured([&] {
    const double start = CpuNanoseconds();
    Received received = Receive(5'000);
    const double sum = CpuNanoseconds() - start + player.Use(std::move(received), &longest);
    player.MarkPublished();
    return sum;
  });
  table.Compare("retrieval of 5,000 records on the module's tasks", tasks,
                "the same with what the event's thread does", everything, AtMost(0.4));
  const auto longestPart = Side::Measured([&] {
    double part = 0;
    player.Use(Receive(10'000), &part);
    player.MarkPublished();
    return part;
  });
  const auto readRapidJson = [] {
    rapidjson::Document document;
    document.Parse(SampleText().data(), SampleText().size());
    Require(!document.HasParseError(), "RapidJSON does not read it");
  };
  table.Compare("longest slice of a retrieval of 10,000 records", longestPart,
                "RapidJSON Document of the response", readRapidJson, AtMost(0.31));
}

}  // namespace Kest::Bench
