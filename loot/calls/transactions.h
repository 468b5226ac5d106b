// Transactions carries out the player's crafts and redemptions: it sends one to the service, waits
// for the result and applies it to the store.
// Failure messages, all of status 500: "Loot disabled.", "Error serializing request payload.",
//   "Error in ProcessPlayerLootUpdateResponse: %1", "Unexpected status in
//   ProcessPlayerLootUpdateResponse: %1", "Error serializing result payload."
// A host or system that gives no unique id for the request ends the process with "ALE-8B4DC795".
// Threads: module tasks only; Craft and Redeem wait, and any number of them may wait side by side.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "loot/calls/forward.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_switch.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class Transactions {
 public:
  // All outlive it.
  Transactions(AppModule& module, ServiceProxy& proxy, const LootSwitch& loot,
               LootInventory& inventory, LootPublisher& publisher, LootRetrieval& retrieval)
      : module_(module),
        proxy_(proxy),
        loot_(loot),
        inventory_(inventory),
        publisher_(publisher),
        retrieval_(retrieval) {}

  // Runs a recipe on the items of the given loot ids, `repeat` times (once when it is not given).
  Maybe<Api::PlayerLootUpdate> Craft(const std::string& recipeName,
                                     const std::vector<std::string>& lootIds,
                                     std::optional<int32_t> repeat);
  // Redeems what the named loot unlocks.
  Maybe<Api::PlayerLootUpdate> Redeem(const std::string& lootName);

 private:
  using Result = SVDS::PlayerLootResultDTO;

  template <class Payload>
  Maybe<Api::PlayerLootUpdate> Run(const char* kind, const char* method, const Payload& payload);
  Maybe<Api::PlayerLootUpdate> ProcessPlayerLootUpdateResponse(const std::string& requestId,
                                                               const Result& result);
  Api::PlayerLootUpdate Apply(const Result& result);

  AppModule& module_;
  ServiceProxy& proxy_;
  const LootSwitch& loot_;
  LootInventory& inventory_;
  LootPublisher& publisher_;
  LootRetrieval& retrieval_;
};

}  // namespace Kest::Client::Loot
