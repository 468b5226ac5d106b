// LootRetrieval reads the whole inventory and all definitions from the service.
// Threads: module tasks only.
#pragma once

#include <cstdint>
#include <string>

#include "base/maybe_type.h"
#include "loot/calls/loot_actions.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_state.h"

namespace Kest::Client {
class ServiceProxy;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class LootRetrieval {
 public:
  // All outlive it.
  LootRetrieval(ServiceProxy& proxy, LootState& state, LootInventory& inventory,
                LootActions& actions)
      : proxy_(proxy), state_(state), inventory_(inventory), actions_(actions) {}

  // Answers "LOOT_DISABLED" while loot is disabled. Forced: waits for the answer, applies it, loads
  // the tournament logos, and answers "SUCCESS" or the failure "Error while calling
  // getAllPlayerLootAndAllDefinitions: %1". Not forced: "TOO_FREQUENT" within three seconds of the
  // last retrieval, forced ones counted too; otherwise the answer is applied when it comes, and
  // "REQUESTED_ASYNC" is answered at once.
  Maybe<std::string> Retrieve(bool forced);

 private:
  using Answer = SVDS::PlayerLootDefinitionsDTO;

  Maybe<std::string> RetrieveAndWait();
  void StartRetrieval();
  void OnAnswer(Maybe<Answer> answer);
  // Takes each list whose version differs from the one held, then the inventory.
  void Apply(Answer answer);

  ServiceProxy& proxy_;
  LootState& state_;
  LootInventory& inventory_;
  LootActions& actions_;
  int64_t lastRetrieval_ = 0;  // when the last one was sent, in seconds since 1970
  int64_t itemListVersion_ = 0;
  int64_t recipeListVersion_ = 0;
  int64_t queryResultVersion_ = 0;
};

}  // namespace Kest::Client::Loot
