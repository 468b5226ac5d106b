#include "loot/loot_endpoints.h"

#include "loot/calls/chest_notices.h"
#include "loot/calls/client_configuration.h"
#include "loot/calls/grant_notices.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/source_readiness.h"
#include "loot/calls/transactions.h"
#include "loot/calls/watched_views.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {

using enum HttpMethod;

void LootEndpoints::Register(Dispatcher& api) {
  RegisterInventoryRoutes(api);
  RegisterRecipeRoutes(api);
  RegisterNotificationRoutes(api);
}

void LootEndpoints::RegisterInventoryRoutes(Dispatcher& api) {
  api.Route(kPost, "/tav-loot/v1/refresh", "RefreshLoot", &targets_.retrieval,
            &LootRetrieval::Retrieve)
      .Describe("Retrieves the inventory and all definitions again; returns a result code")
      .Query("force", "Waits for the response and ignores how recent the last retrieval is");
  api.Route(kGet, "/tav-loot/v1/enabled", "GetEnabled", &targets_.loot, &LootSwitch::Enabled)
      .Describe("Whether loot is enabled");
  api.Route(kGet, "/tav-loot/v1/ready", "GetReady", &targets_.readiness, &SourceReadiness::Ready)
      .Describe("Whether every data source of the goal has responded");
  api.Route(kGet, "/tav-loot/v1/player-loot", "GetPlayerLoot", this, &LootEndpoints::GetPlayerLoot)
      .Describe("Every item of the player's loot");
  api.Route(kGet, "/tav-loot/v1/player-loot-map", "GetPlayerLootMap", this,
            &LootEndpoints::GetPlayerLootMap)
      .Describe("Every item of the player's loot by its loot id");
  api.Route(kGet, "/tav-loot/v2/player-loot-map", "GetPlayerLootMapV2", this,
            &LootEndpoints::GetPlayerLootMapV2)
      .Describe("Every item of the player's loot by its loot id, with the inventory's version");
  api.Route(kGet, "/tav-loot/v1/player-loot/{lootId}", "GetPlayerLootById", this,
            &LootEndpoints::GetPlayerLootById)
      .Describe("One item of the player's loot")
      .Path("lootId", "An item's loot id");
  api.Route(kGet, "/tav-loot/v1/player-display-categories", "GetPlayerDisplayCategories", this,
            &LootEndpoints::GetPlayerDisplayCategories)
      .Describe("The display categories of all loot definitions");
}

void LootEndpoints::RegisterRecipeRoutes(Dispatcher& api) {
  api.Route(kGet, "/tav-loot/v1/new-player-check-done", "GetNewPlayerCheckDone",
            &targets_.newPlayerChest, &NewPlayerChest::IsDone)
      .Describe("Whether the new-player chest was requested");
  api.Route(kPost, "/tav-loot/v1/new-player-check-done/{newValue}", "SetNewPlayerCheckDone",
            &targets_.newPlayerChest, &NewPlayerChest::SetDone)
      .Describe("Sets whether the new-player chest was requested; false requests it again at once")
      .Path("newValue", "Whether it counts as requested");
  api.Route(kGet, "/tav-loot/v1/recipes/configuration", "GetRecipeConfiguration",
            &targets_.configuration, &ClientConfiguration::ReadRecipeMenu)
      .Describe("The settings of the recipe menu");
  api.Route(kGet, "/tav-loot/v1/currency-configuration", "GetCurrencyConfiguration",
            &targets_.configuration, &ClientConfiguration::ReadCurrencies)
      .Describe("The settings of the currencies");
  api.Route(kGet, "/tav-loot/v1/recipes/initial-item/{lootId}", "GetInitialItemRecipes",
            &targets_.views, &WatchedViews::ReadRecipes)
      .Describe("The recipes whose first ingredient is the item")
      .Path("lootId", "An item's loot id");
  api.Route(kPost, "/tav-loot/v1/recipes/initial-item/{lootId}", "PostInitialItemRecipes",
            &targets_.views, &WatchedViews::ReadRecipes)
      .Describe("The recipes whose first ingredient is the item, as GetInitialItemRecipes")
      .Path("lootId", "An item's loot id");
  api.Route(kPost, "/tav-loot/v1/recipes/{recipeName}/craft", "CraftRecipe", &targets_.transactions,
            &Transactions::Craft)
      .Describe("Runs a recipe on items of the player's loot and returns what changed")
      .Path("recipeName", "The recipe to run")
      .Body("playerLootList", "Loot ids of the items the recipe takes")
      .Query("repeat", "How many times to run it; once when absent");
  api.Route(kPost, "/tav-loot/v1/player-loot/{lootName}/redeem", "RedeemPlayerLoot",
            &targets_.transactions, &Transactions::Redeem)
      .Describe("Redeems an item and returns what changed")
      .Path("lootName", "The loot name of an item that can be redeemed");
}

void LootEndpoints::RegisterNotificationRoutes(Dispatcher& api) {
  api.Route(kGet, "/tav-loot/v1/loot-grants", "GetLootGrants", &targets_.grants,
            &GrantNotices::Shown)
      .Describe("The loot grants shown to the player");
  api.Route(kDelete, "/tav-loot/v1/loot-grants/{id}", "DismissLootGrant", &targets_.grants,
            &GrantNotices::Dismiss)
      .Describe("Dismisses a loot grant")
      .Path("id", "The grant's id");
  api.Route(kGet, "/tav-loot/v1/player-loot/{lootId}/context-menu", "GetContextMenu",
            &targets_.views, &WatchedViews::ReadContextMenu)
      .Describe("What can be done with the item")
      .Path("lootId", "An item's loot id");
  api.Route(kPost, "/tav-loot/v1/player-loot/{lootId}/context-menu", "PostContextMenu",
            &targets_.views, &WatchedViews::ReadContextMenu)
      .Describe("What can be done with the item, as GetContextMenu")
      .Path("lootId", "An item's loot id");
  api.Route(kDelete, "/tav-loot/v1/player-loot/{lootId}/new-notification", "DismissNewNotification",
            this, &LootEndpoints::DismissNewNotification)
      .Describe("Clears an item's mark as new")
      .Path("lootId", "An item's loot id");
  api.Route(kGet, "/tav-loot/v1/loot-items", "GetLootItems", this, &LootEndpoints::GetLootItems)
      .Describe("Every loot definition");
  api.Route(kGet, "/tav-loot/v1/player-loot-notifications", "GetPlayerLootNotifications",
            &targets_.chests, &ChestNotices::List)
      .Describe(
          "How many of the special chests the player holds, and whether that was acknowledged");
  api.Route(kPost, "/tav-loot/v1/player-loot-notifications/{id}/acknowledge",
            "AcknowledgePlayerLootNotification", &targets_.chests, &ChestNotices::Acknowledge)
      .Describe("Acknowledges a notification; returns ACKNOWLEDGED or NOT_FOUND")
      .Path("id", "The notification's id: the loot id of its chest");
}

template <class Read>
auto LootEndpoints::ReadRetrieved(Read read)
    -> Maybe<decltype(read(std::declval<const LootState&>()))> {
  if (targets_.retrieval.Pending()) {
    const Maybe<std::string> retrieved = targets_.retrieval.Retrieve(/*forced=*/true);
    if (!retrieved) return retrieved.GetFailure();
  }
  return read(targets_.state);
}

Maybe<std::vector<Api::PlayerLootPointer>> LootEndpoints::GetPlayerLoot() {
  return ReadRetrieved([](const LootState& state) {
    std::vector<Api::PlayerLootPointer> list;
    const auto store = state.store.Snapshot();
    list.reserve(store->playerLoot.size());
    for (const auto& [lootId, item] : store->playerLoot) list.push_back(item);
    return list;
  });
}

Maybe<WithJson<LootEndpoints::Items>> LootEndpoints::GetPlayerLootMap() {
  return ReadRetrieved([this](const LootState& state) {
    const ItemMap map = state.store.Snapshot();
    const MapText* const text = targets_.publisher.PresentText();
    return WithJson<Items>{Items(map, &map->playerLoot),
                           text != nullptr ? text->ShareItems() : SharedText()};
  });
}

Maybe<WithJson<LootEndpoints::ItemMap>> LootEndpoints::GetPlayerLootMapV2() {
  return ReadRetrieved([this](const LootState& state) {
    const MapText* const text = targets_.publisher.PresentText();
    return WithJson<ItemMap>{state.store.Snapshot(),
                             text != nullptr ? text->ShareVersioned() : SharedText()};
  });
}

Maybe<Api::PlayerLootPointer> LootEndpoints::GetPlayerLootById(const std::string& lootId) {
  Maybe<Api::PlayerLootPointer> item =
      ReadRetrieved([&](const LootState& state) { return state.store.Find(lootId); });
  if (item && item.GetValue() == nullptr) return Failure{{}, kStatusNotFound};
  return item;
}

Maybe<std::vector<std::string>> LootEndpoints::GetPlayerDisplayCategories() {
  return ReadRetrieved(
      [](const LootState& state) { return state.definitions->displayCategories(); });
}

Maybe<std::vector<Api::LootItem>> LootEndpoints::GetLootItems() {
  return ReadRetrieved([](const LootState& state) {
    std::vector<Api::LootItem> list;
    list.reserve(state.definitions->items().size());
    for (const SVDS::LootItemClientDTO& item : state.definitions->items()) {
      list.push_back(PublishedLootItem(item));
    }
    return list;
  });
}

void LootEndpoints::DismissNewNotification(const std::string& lootId) {
  if (targets_.inventory.ClearNewMark(lootId)) targets_.publisher.Publish();
}

}  // namespace Kest::Client::Loot
