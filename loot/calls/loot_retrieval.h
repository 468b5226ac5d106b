// LootRetrieval reads the whole inventory and all definitions from the service. What a response
// brings is applied in parts, and other tasks run in between: they see the inventory and the
// definitions that were held before until the last part, which replaces all. Nothing is replaced
// when memory runs out.
// Threads: module tasks only, but the definitions are made where the response arrives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/maybe_type.h"
#include "client/result_handler.h"
#include "loot/calls/forward.h"
#include "loot/calls/in_progress.h"
#include "loot/model/loot_definitions.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {

class LootRetrieval {
 public:
  // What a retrieval changes, and what follows it; all outlive it.
  struct Targets {
    const LootDefinitionsPointer& definitions;
    LootInventory& inventory;
    LootPublisher& publisher;
    TournamentLogos& logos;
  };
  LootRetrieval(AppModule& module, ServiceProxy& proxy, const LootSwitch& loot,
                const Targets& targets)
      : module_(module), proxy_(proxy), loot_(loot), targets_(targets) {}

  // Returns "LOOT_DISABLED" while loot is disabled. Forced: waits for the response, applies it,
  // loads the tournament logos, and returns "SUCCESS" or the failure "Error while calling
  // getAllPlayerLootAndAllDefinitions: %1". Not forced: "TOO_FREQUENT" within three seconds of the
  // last retrieval, forced ones included; otherwise the response is applied when it arrives, and
  // "REQUESTED_ASYNC" is returned at once.
  Maybe<std::string> Retrieve(std::optional<bool> forced);

  // Posts a task that retrieves, not forced.
  void Post();

  // No inventory has been applied yet. Once false, it stays so.
  bool Pending() const { return pending_; }

  // What Retrieve does when it is called at that time, and why; `result` is what it returns on
  // success.
  struct Decision {
    std::string_view result;
    bool isSent = false;
    std::string_view because;
  };
  Decision Decide(bool isForced, int64_t now) const;

  // `lastUpdate` of the three lists.
  struct Versions {
    int64_t items = 0;
    int64_t recipes = 0;
    int64_t queryResults = 0;
  };
  const Versions& HeldVersions() const { return held_; }
  // Retrievals whose response has not come, or is being applied.
  size_t Running() const { return running_.Count(); }
  // The host's time, in seconds since 1970.
  int64_t Now() const;
  // When the last one was sent, in the same seconds; 0: never.
  int64_t LastSent() const { return lastRetrieval_; }
  // Until when one that is not forced is too frequent.
  int64_t ThrottledUntil() const;
  // Why the last one failed; empty when it did not.
  const std::string& LastFailure() const { return lastFailure_; }

 private:
  using Inventory = SVDS::PlayerLootDefinitionsDTO;

  // What a response brings.
  struct Offer {
    Versions versions;
    LootDefinitions::Lists lists;  // null: left out, or of the version that was sent or is held
    // What was held when the request was sent, and the same with these lists.
    LootDefinitionsPointer base;
    LootDefinitionsPointer definitions;
    std::vector<SVDS::PlayerLootDTO> records;
  };

  Maybe<std::string> RetrieveAndWait();
  void StartRetrieval();
  // Keeps it, after its log line.
  void OnFailure(const Failure& failure);
  Preparation<Inventory> UseOfResponse();
  // Runs on any thread.
  static Offer MakeOffer(Inventory inventory, const Versions& sent, LootDefinitionsPointer base);
  std::shared_ptr<InventoryReplacement> Begin(Offer* offer) const;
  void End(Offer* offer);

  AppModule& module_;
  ServiceProxy& proxy_;
  const LootSwitch& loot_;
  const Targets targets_;
  bool pending_ = true;
  int64_t lastRetrieval_ = 0;  // when the last one was sent, in seconds since 1970
  Versions held_;
  const InProgress running_;
  std::string lastFailure_;
  // The definitions that were replaced last. Freeing them takes long: where the next response
  // arrives does it.
  LootDefinitionsPointer retired_;
};

}  // namespace Kest::Client::Loot
