// LootPlugin is the loot back end: it owns the state and the calls, follows what the state depends
// on (subscriptions.cc), answers the endpoints (endpoints.cc) and tells about new loot
// (loot_notices.cc). Threads: the constructor and RegisterApi on the loader's thread, everything
// else on module tasks.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "loot/calls/client_configuration.h"
#include "loot/calls/collection_sources.h"
#include "loot/calls/game_data_loader.h"
#include "loot/calls/inbound_messages.h"
#include "loot/calls/loot_actions.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/tournament_logos.h"
#include "loot/calls/transactions.h"
#include "loot/calls/watched_views.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_state.h"
#include "loot/wire/dto_class_names.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/recipe_resources.h"
#include "plugin/plugin_base.h"

namespace Kest::Client::Loot {

class LootPlugin final : public PluginBase, private LootActions {
 public:
  explicit LootPlugin(PluginRuntime& runtime);

  void RegisterApi() override;
  bool Initialise() override;
  void Shutdown() override;

 private:
  // ---- What the calls ask (LootActions) ---------------------------------------------------------
  void RequestPublication() override;
  void PostRetrieval() override;
  void OnSourceAnswered(uint8_t readinessBits) override;
  void LoadTournamentLogos() override;
  void PostTournamentLogoLoad() override;
  void AddLootGrant(Api::LootGrantNotification grant) override;

  // ---- State changes that others observe --------------------------------------------------------
  void RecomputeEnabled();
  void SetReadiness(uint8_t bits, uint8_t goal);
  void SetGrantNotificationsAllowed(bool allowed);
  void PublishLootGrants();

  // ---- Subscriptions ----------------------------------------------------------------------------
  struct Wiring;
  void SubscribeAll();
  template <auto kHandler, void (LootPlugin::*kDeleted)() = nullptr>
  void Follow(std::string_view url);
  void FollowPlatformMessages(std::string_view type);
  void OnConfigEnabled(const bool& enabled);
  void OnConfigClientEnabled(const bool& enabled);
  void OnConfigGoal(const uint8_t& goal);
  void OnConfigMinimumLevel(const uint32_t& level);
  void OnConfigNewPlayerChest(const bool& enabled);
  void OnSummoner(const Api::Summoner& summoner);
  void OnLoginDataPacket(const Api::LoginDataPacket& packet);
  void OnLoginSession(const Api::LoginSession& session);
  void OnLoginSessionDeleted();
  void OnGameflowSession(const Api::GameflowSession& session);
  void OnGameflowSessionDeleted();

  // ---- Endpoints --------------------------------------------------------------------------------
  using Items = std::reference_wrapper<const Api::PlayerLootItems>;
  using ItemMap = std::reference_wrapper<const Api::PlayerLootMap>;

  // In order; together they are the whole table.
  void RegisterInventoryRoutes();
  void RegisterRecipeRoutes();
  void RegisterNotificationRoutes();
  // Makes sure that an inventory was retrieved before loot is read.
  Maybe<Nothing> RetrieveBeforeFirstRead();

  Maybe<std::string> RefreshLoot(std::optional<bool> force);
  bool GetEnabled();
  bool GetReady();
  Maybe<std::vector<Api::PlayerLootPointer>> GetPlayerLoot();
  Maybe<Items> GetPlayerLootMap();
  Maybe<ItemMap> GetPlayerLootMapV2();
  Maybe<Api::PlayerLootPointer> GetPlayerLootById(const std::string& lootId);
  Maybe<std::vector<std::string>> GetPlayerDisplayCategories();
  bool GetNewPlayerCheckDone();
  std::string SetNewPlayerCheckDone(bool newValue);
  void RequestClientConfiguration();
  Api::RecipeMenuConfig GetRecipeConfiguration();
  Api::CurrencyConfiguration GetCurrencyConfiguration();
  std::vector<Api::Recipe> GetInitialItemRecipes(const std::string& lootId);
  Maybe<Api::PlayerLootUpdate> CraftRecipe(const std::string& recipeName,
                                           const std::vector<std::string>& playerLootList,
                                           std::optional<int32_t> repeat);
  Maybe<Api::PlayerLootUpdate> RedeemPlayerLoot(const std::string& lootName);
  std::vector<Api::LootGrantNotification> GetLootGrants();
  Maybe<Nothing> DismissLootGrant(int64_t id);
  std::vector<Api::ContextMenu> GetContextMenu(const std::string& lootId);
  Maybe<Nothing> DismissNewNotification(const std::string& lootId);
  Maybe<std::vector<Api::LootItem>> GetLootItems();
  std::vector<Api::PlayerLootNotification> GetPlayerLootNotifications();
  std::string AcknowledgePlayerLootNotification(const std::string& id);

  SVDS::DtoClassNames dtoClassNames_;
  LootState state_;
  LootInventory inventory_;
  SiblingClient client_;
  ServiceProxy proxy_;
  WatchedViews views_;
  LootPublisher publisher_;
  LootRetrieval retrieval_;
  Transactions transactions_;
  ClientConfiguration configuration_;
  NewPlayerChest newPlayerChest_;
  CollectionSources sources_;
  TournamentLogos tournamentLogos_;
  InboundMessages inbound_;
  GameDataLoader gameDataLoader_;
  const std::string lootDefinitionPath_ = "/tav-game-data/assets/v1/loot.json";
};

}  // namespace Kest::Client::Loot
