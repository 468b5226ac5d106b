// LootEndpoints registers the plugin's endpoints and handles those that read the player's loot; the
// others go straight to the object that has the rule.
// Threads: Register on the loader's thread, handlers on module tasks.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "api/dispatcher.h"
#include "base/maybe_type.h"
#include "loot/calls/forward.h"
#include "loot/state/loot_state.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootEndpoints {
 public:
  // What the requests go to; all outlive the dispatcher.
  struct Targets {
    const LootSwitch& loot;
    const LootState& state;
    LootInventory& inventory;
    LootPublisher& publisher;
    SourceReadiness& readiness;
    LootRetrieval& retrieval;
    NewPlayerChest& newPlayerChest;
    ClientConfiguration& configuration;
    WatchedViews& views;
    Transactions& transactions;
    GrantNotices& grants;
    ChestNotices& chests;
  };
  explicit LootEndpoints(const Targets& targets) : targets_(targets) {}

  // In the order of the API description: of two templates that match a path, the first is used.
  void Register(Dispatcher& api);

 private:
  using Items = std::shared_ptr<const Api::PlayerLootItems>;
  using ItemMap = std::shared_ptr<const Api::PlayerLootMap>;

  // In order; together they are the whole table.
  void RegisterInventoryRoutes(Dispatcher& api);
  void RegisterRecipeRoutes(Dispatcher& api);
  void RegisterNotificationRoutes(Dispatcher& api);

  // Runs `read` once an inventory has been retrieved, or returns why none could be.
  template <class Read>
  auto ReadRetrieved(Read read) -> Maybe<decltype(read(std::declval<const LootState&>()))>;

  Maybe<std::vector<Api::PlayerLootPointer>> GetPlayerLoot();
  Maybe<WithJson<Items>> GetPlayerLootMap();
  Maybe<WithJson<ItemMap>> GetPlayerLootMapV2();
  Maybe<Api::PlayerLootPointer> GetPlayerLootById(const std::string& lootId);
  Maybe<std::vector<std::string>> GetPlayerDisplayCategories();
  Maybe<std::vector<Api::LootItem>> GetLootItems();
  void DismissNewNotification(const std::string& lootId);

  const Targets targets_;
};

}  // namespace Kest::Client::Loot
