// LootPlugin is the loot back end: it owns the state, the objects that have the rules, and what
// wires them to the host's events and requests. Each object is given those made before it.
// Threads: the constructor and RegisterApi on the loader's thread, everything else on module tasks.
#pragma once

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "loot/calls/chest_notices.h"
#include "loot/calls/client_configuration.h"
#include "loot/calls/collection_sources.h"
#include "loot/calls/game_data_loader.h"
#include "loot/calls/grant_notices.h"
#include "loot/calls/inbound_messages.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/calls/new_player_chest.h"
#include "loot/calls/player_session.h"
#include "loot/calls/source_readiness.h"
#include "loot/calls/tournament_logos.h"
#include "loot/calls/transactions.h"
#include "loot/calls/watched_views.h"
#include "loot/explain/explainer.h"
#include "loot/loot_endpoints.h"
#include "loot/loot_subscriptions.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_state.h"
#include "loot/state/loot_switch.h"
#include "loot/wire/dto_class_names.h"
#include "plugin/plugin_base.h"

namespace Kest::Client::Loot {

class LootPlugin final : public PluginBase {
 public:
  // Work on more than `itemsInSlice` items has pauses.
  explicit LootPlugin(PluginRuntime& runtime, size_t itemsInSlice = kItemsInSlice);

  void RegisterApi() override;
  bool Initialise() override;
  void Shutdown() override;
  Response Explain(std::string_view question) override;

 private:
  SVDS::DtoClassNames dtoClassNames_;
  SiblingClient client_;
  ServiceProxy proxy_;

  LootSwitch loot_;
  LootState state_;
  LootInventory inventory_;
  WatchedViews views_;
  ChestNotices chests_;
  LootPublisher publisher_;
  SourceReadiness readiness_;
  TournamentLogos logos_;
  CollectionSources sources_;
  LootRetrieval retrieval_;
  Transactions transactions_;
  NewPlayerChest newPlayerChest_;
  LootEnablement enablement_;
  PlayerSession session_;
  GrantNotices grants_;
  InboundMessages messages_;
  ClientConfiguration configuration_;
  GameDataLoader gameDataLoader_;

  LootSubscriptions subscriptions_;
  LootEndpoints endpoints_;
  Explainer explainer_;
};

}  // namespace Kest::Client::Loot
