// LootPublisher turns changes of the store and of the display categories into resource events.
// Threads:  module tasks only; it does not wait.
// Lifetime: what it was made with outlives it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "loot/player_loot_store.h"

namespace Kest {
class AppModule;
}

namespace Kest::Client::Loot {

class LootDefinitions;
class SiblingClient;

class LootPublisher {
 public:
  LootPublisher(AppModule& module, SiblingClient& client, PlayerLootStore& store,
                const LootDefinitions& definitions);

  // Posts the task "LootPlugin.NotifyAllLootResourceUpdated <count of publications>", which
  // publishes. Requests made before it runs may share one task.
  void Request();

  // Publishes what differs from the last publication, in this order: each written item in the
  // store's order ("Create" for a new one, "Update" otherwise), each removed one ("Delete"), then,
  // when there was any, the two maps; then the display categories when they differ. The changes are
  // all collected before the first event leaves.
  void Publish();

 private:
  void PublishItems(const PlayerLootChanges& changes);

  AppModule& module_;
  SiblingClient& client_;
  PlayerLootStore& store_;
  const LootDefinitions& definitions_;
  std::vector<std::string> publishedCategories_;
  uint64_t publications_ = 0;
};

}  // namespace Kest::Client::Loot
