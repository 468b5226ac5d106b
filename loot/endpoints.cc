// The endpoints, in the order of the API description, and their handlers. Where two templates fit a
// path, the first registered answers.
#include <utility>

#include "binding/types/type_registry.h"
#include "loot/loot_plugin.h"
#include "loot/model/loot_constants.h"
#include "loot/wire/register_resources.h"

namespace Kest::Client::Loot {

void LootPlugin::RegisterApi() {
  Api::RegisterLootResources(TypeRegistry::Process());
  SVDS::RegisterLootDtos(TypeRegistry::Process(), &dtoClassNames_);
  RegisterInventoryRoutes();
  RegisterRecipeRoutes();
  RegisterNotificationRoutes();
}

void LootPlugin::RegisterInventoryRoutes() {
  using P = LootPlugin;
  Dispatcher& api = Api();
  api.Route(HttpMethod::kPost, "/tav-loot/v1/refresh", "RefreshLoot", this, &P::RefreshLoot)
      .Describe("Retrieves the inventory and all definitions again; answers a result word")
      .Query("force", "Waits for the answer and ignores how recent the last retrieval is");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/enabled", "GetEnabled", this, &P::GetEnabled)
      .Describe("Whether loot is enabled");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/ready", "GetReady", this, &P::GetReady)
      .Describe("Whether every data source that counts has answered");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-loot", "GetPlayerLoot", this, &P::GetPlayerLoot)
      .Describe("Every item of the player's loot");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-loot-map", "GetPlayerLootMap", this,
            &P::GetPlayerLootMap)
      .Describe("Every item of the player's loot by its loot id");
  api.Route(HttpMethod::kGet, "/tav-loot/v2/player-loot-map", "GetPlayerLootMapV2", this,
            &P::GetPlayerLootMapV2)
      .Describe("Every item of the player's loot by its loot id, with the inventory's version");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-loot/{lootId}", "GetPlayerLootById", this,
            &P::GetPlayerLootById)
      .Describe("One item of the player's loot")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-display-categories",
            "GetPlayerDisplayCategories", this, &P::GetPlayerDisplayCategories)
      .Describe("The display categories of all loot definitions");
}

void LootPlugin::RegisterRecipeRoutes() {
  using P = LootPlugin;
  Dispatcher& api = Api();
  api.Route(HttpMethod::kGet, "/tav-loot/v1/new-player-check-done", "GetNewPlayerCheckDone", this,
            &P::GetNewPlayerCheckDone)
      .Describe("Whether the new-player chest was asked for");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/new-player-check-done/{newValue}",
            "SetNewPlayerCheckDone", this, &P::SetNewPlayerCheckDone)
      .Describe("Sets whether the new-player chest was asked for; false asks again at once")
      .Path("newValue", "Whether it counts as asked for");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/recipes/configuration", "GetRecipeConfiguration", this,
            &P::GetRecipeConfiguration)
      .Describe("The settings of the recipe menu");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/currency-configuration", "GetCurrencyConfiguration",
            this, &P::GetCurrencyConfiguration)
      .Describe("The settings of the currencies");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/recipes/initial-item/{lootId}", "GetInitialItemRecipes",
            this, &P::GetInitialItemRecipes)
      .Describe("The recipes that take the item first")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/recipes/initial-item/{lootId}",
            "PostInitialItemRecipes", this, &P::GetInitialItemRecipes)
      .Describe("The recipes that take the item first, as GetInitialItemRecipes")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/recipes/{recipeName}/craft", "CraftRecipe", this,
            &P::CraftRecipe)
      .Describe("Runs a recipe on items of the player's loot and answers what changed")
      .Path("recipeName", "The recipe to run")
      .Body("playerLootList", "Loot ids of the items the recipe takes")
      .Query("repeat", "How many times to run it; once when absent");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/player-loot/{lootName}/redeem", "RedeemPlayerLoot",
            this, &P::RedeemPlayerLoot)
      .Describe("Unlocks what an item stands for and answers what changed")
      .Path("lootName", "The loot name of an item that can be redeemed");
}

void LootPlugin::RegisterNotificationRoutes() {
  using P = LootPlugin;
  Dispatcher& api = Api();
  api.Route(HttpMethod::kGet, "/tav-loot/v1/loot-grants", "GetLootGrants", this, &P::GetLootGrants)
      .Describe("The loot grants shown to the player");
  api.Route(HttpMethod::kDelete, "/tav-loot/v1/loot-grants/{id}", "DismissLootGrant", this,
            &P::DismissLootGrant)
      .Describe("Takes a loot grant off the list")
      .Path("id", "The grant's id");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-loot/{lootId}/context-menu", "GetContextMenu",
            this, &P::GetContextMenu)
      .Describe("What can be done with the item")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/player-loot/{lootId}/context-menu", "PostContextMenu",
            this, &P::GetContextMenu)
      .Describe("What can be done with the item, as GetContextMenu")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kDelete, "/tav-loot/v1/player-loot/{lootId}/new-notification",
            "DismissNewNotification", this, &P::DismissNewNotification)
      .Describe("Takes the mark of a new item off")
      .Path("lootId", "An item's loot id");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/loot-items", "GetLootItems", this, &P::GetLootItems)
      .Describe("Every loot definition");
  api.Route(HttpMethod::kGet, "/tav-loot/v1/player-loot-notifications",
            "GetPlayerLootNotifications", this, &P::GetPlayerLootNotifications)
      .Describe("How many of the special chests the player holds, and whether that was seen");
  api.Route(HttpMethod::kPost, "/tav-loot/v1/player-loot-notifications/{id}/acknowledge",
            "AcknowledgePlayerLootNotification", this, &P::AcknowledgePlayerLootNotification)
      .Describe("Marks a notification as seen; answers ACKNOWLEDGED or NOT_FOUND")
      .Path("id", "The notification's id: the loot id of its chest");
}

Maybe<Nothing> LootPlugin::RetrieveBeforeFirstRead() {
  if (!state_.status.retrievalPending) return Nothing{};
  Maybe<std::string> word = retrieval_.Retrieve(/*forced=*/true);
  if (!word) return word.GetFailure();
  return Nothing{};
}

Maybe<std::string> LootPlugin::RefreshLoot(std::optional<bool> force) {
  return retrieval_.Retrieve(force.value_or(false));
}

bool LootPlugin::GetEnabled() {
  return state_.status.enabled;
}

bool LootPlugin::GetReady() {
  return state_.readiness.Ready();
}

Maybe<std::vector<Api::PlayerLootPointer>> LootPlugin::GetPlayerLoot() {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  std::vector<Api::PlayerLootPointer> list;
  list.reserve(state_.store.items().size());
  for (const auto& [lootId, item] : state_.store.items()) list.push_back(item);
  return list;
}

Maybe<LootPlugin::Items> LootPlugin::GetPlayerLootMap() {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  return Items(state_.store.items());
}

Maybe<LootPlugin::ItemMap> LootPlugin::GetPlayerLootMapV2() {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  return ItemMap(state_.store.map());
}

Maybe<Api::PlayerLootPointer> LootPlugin::GetPlayerLootById(const std::string& lootId) {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  Api::PlayerLootPointer item = state_.store.Find(lootId);
  if (item == nullptr) return Failure{"Not found", 404};
  return item;
}

Maybe<std::vector<std::string>> LootPlugin::GetPlayerDisplayCategories() {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  return state_.definitions.displayCategories();
}

bool LootPlugin::GetNewPlayerCheckDone() {
  return state_.status.newPlayerCheckDone;
}

std::string LootPlugin::SetNewPlayerCheckDone(bool newValue) {
  state_.status.newPlayerCheckDone = newValue;
  return std::string(newValue ? kNotDone : newPlayerChest_.Check());
}

// The request is a task of its own, so that the answer does not wait for the host to take it.
void LootPlugin::RequestClientConfiguration() {
  Module().PostTask("LootPlugin.GetClientConfiguration", [this] { configuration_.Request(); });
}

Api::RecipeMenuConfig LootPlugin::GetRecipeConfiguration() {
  RequestClientConfiguration();
  return configuration_.recipeMenu();
}

Api::CurrencyConfiguration LootPlugin::GetCurrencyConfiguration() {
  RequestClientConfiguration();
  return configuration_.currencies();
}

std::vector<Api::Recipe> LootPlugin::GetInitialItemRecipes(const std::string& lootId) {
  return views_.ReadRecipes(lootId);
}

Maybe<Api::PlayerLootUpdate> LootPlugin::CraftRecipe(const std::string& recipeName,
                                                     const std::vector<std::string>& playerLootList,
                                                     std::optional<int32_t> repeat) {
  return transactions_.Craft(recipeName, playerLootList, repeat);
}

Maybe<Api::PlayerLootUpdate> LootPlugin::RedeemPlayerLoot(const std::string& lootName) {
  return transactions_.Redeem(lootName);
}

std::vector<Api::ContextMenu> LootPlugin::GetContextMenu(const std::string& lootId) {
  return views_.ReadContextMenu(lootId);
}

Maybe<Nothing> LootPlugin::DismissNewNotification(const std::string& lootId) {
  if (inventory_.ClearNewMark(lootId)) publisher_.Publish();
  return Nothing{};
}

Maybe<std::vector<Api::LootItem>> LootPlugin::GetLootItems() {
  if (auto retrieved = RetrieveBeforeFirstRead(); !retrieved) return retrieved.GetFailure();
  std::vector<Api::LootItem> list;
  list.reserve(state_.definitions.items().size());
  for (const SVDS::LootItemClientDTO& item : state_.definitions.items()) {
    list.push_back(PublishedLootItem(item));
  }
  return list;
}

}  // namespace Kest::Client::Loot
