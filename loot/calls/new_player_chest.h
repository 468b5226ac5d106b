// NewPlayerChest asks the service for the chest a player gets on reaching the configured level.
// Threads: module tasks only.
#pragma once

#include <string_view>

#include "base/maybe_type.h"
#include "loot/calls/loot_actions.h"
#include "loot/state/loot_status.h"
#include "loot/wire/loot_dtos.h"

namespace Kest {
class AppModule;
}

namespace Kest::Client {
class ServiceProxy;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class NewPlayerChest {
 public:
  // All outlive it.
  NewPlayerChest(AppModule& module, ServiceProxy& proxy, LootStatus& status, LootActions& actions)
      : module_(module), proxy_(proxy), status_(status), actions_(actions) {}

  // Starts "checkAndGrantNewPlayerChest" when the player qualifies, and answers "SUBMITTED";
  // otherwise, or when the call cannot be started, "NOT_DONE". A chest that was granted brings a
  // new retrieval.
  std::string_view Check();

  // Posts the check as a task, unless something has been retrieved already or the login is too long
  // ago.
  void Schedule();

 private:
  void OnAnswer(const Maybe<SVDS::PlayerLootResultDTO>& answer);

  AppModule& module_;
  ServiceProxy& proxy_;
  LootStatus& status_;
  LootActions& actions_;
};

}  // namespace Kest::Client::Loot
