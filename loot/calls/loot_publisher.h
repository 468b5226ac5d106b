// LootPublisher turns changes of the store and of the display categories into resource events.
// Threads:  module tasks only; it does not wait.
// Lifetime: what it was made with outlives it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "loot/state/loot_state.h"

namespace Kest {
class AppModule;
}

namespace Kest::Client {
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class WatchedViews;

class LootPublisher {
 public:
  LootPublisher(AppModule& module, SiblingClient& client, LootState& state, WatchedViews& views);

  // Posts the task "LootPlugin.NotifyAllLootResourceUpdated <count of publications>", which
  // publishes. Requests made before it runs may share one task.
  void Request();

  // Publishes what differs from the last publication, in this order: each written item in the
  // store's order ("Create" for a new one, "Update" otherwise), each removed one ("Delete"), then,
  // when there was any, the two maps; then the display categories when they differ, and the views
  // that changed with all that. An item whose count the player is told about is followed by the
  // list of notifications. The changes are all collected before the first event leaves.
  void Publish();

 private:
  void PublishItems(const PlayerLootChanges& changes);
  void PublishMaps();

  AppModule& module_;
  SiblingClient& client_;
  LootState& state_;
  WatchedViews& views_;
  std::vector<std::string> publishedCategories_;
  uint64_t publications_ = 0;
};

}  // namespace Kest::Client::Loot
