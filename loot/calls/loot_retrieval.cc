#include "loot/calls/loot_retrieval.h"

#include <functional>
#include <utility>

#include "base/platform.h"
#include "client/service_proxy.h"
#include "log/logger.h"
#include "log/positional_format.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/tournament_logos.h"
#include "loot/model/loot_constants.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kRetrievalMethod = "getAllPlayerLootAndAllDefinitions";
constexpr int64_t kInterval = 3;  // seconds between retrievals that are not forced

// Runs `replace` when the list has another version than the one held, which it then becomes; a
// replacement that fails is tried again next time.
template <class Replace>
void ReplaceIfOther(int64_t offered, int64_t* held, Replace replace) {
  if (offered == *held) return;
  replace();
  *held = offered;
}

}  // namespace

Maybe<std::string> LootRetrieval::Retrieve(std::optional<bool> forced) {
  if (!loot_.Enabled()) return std::string(kLootDisabled);
  const int64_t now = WallClockSeconds();
  const bool isForced = forced.value_or(false);
  if (!isForced && now < lastRetrieval_ + kInterval) return std::string(kTooFrequent);
  lastRetrieval_ = now;
  if (isForced) return RetrieveAndWait();
  StartRetrieval();
  return std::string(kRequestedAsync);
}

void LootRetrieval::Post() {
  module_.PostTask("LootPlugin.RefreshPlayerLoot", [this] {
    // Disabled or too frequent: the store stays as it is, as after a failure, which logs itself.
    static_cast<void>(Retrieve(/*forced=*/false));
  });
}

Maybe<std::string> LootRetrieval::RetrieveAndWait() {
  Maybe<Inventory> response = proxy_.InvokeAndWait<Inventory>(
      kLootService, kRetrievalMethod, itemListVersion_, recipeListVersion_, queryResultVersion_);
  if (!response) {
    return Failure{Format("Error while calling getAllPlayerLootAndAllDefinitions: %1",
                          response.GetFailure().text)};
  }
  Apply(std::move(response.GetValue()));
  targets_.logos.Load();
  return std::string(kSuccess);
}

void LootRetrieval::StartRetrieval() {
  const std::function<void(Maybe<Inventory>)> onDone = [this](Maybe<Inventory> response) {
    OnResponse(std::move(response));
  };
  const std::string failure =
      proxy_.InvokeAsync<Inventory>(kLootService, kRetrievalMethod, {}, false, onDone,
                                    itemListVersion_, recipeListVersion_, queryResultVersion_);
  if (!failure.empty()) OnResponse(Failure{failure});
  targets_.logos.PostLoad();
}

void LootRetrieval::OnResponse(Maybe<Inventory> response) {
  if (response) return Apply(std::move(response.GetValue()));
  LogError("Loot::RetrievePlayerLootAndDefinitions service async returned error: %s",
           response.GetFailure().text.c_str());
}

void LootRetrieval::Apply(Inventory inventory) {
  LootDefinitions& definitions = targets_.definitions;
  ReplaceIfOther(inventory.lootItemList.lastUpdate, &itemListVersion_,
                 [&] { definitions.ReplaceItems(std::move(inventory.lootItemList.lootItems)); });
  ReplaceIfOther(inventory.recipeList.lastUpdate, &recipeListVersion_,
                 [&] { definitions.ReplaceRecipes(std::move(inventory.recipeList.recipes)); });
  ReplaceIfOther(inventory.queryResult.lastUpdate, &queryResultVersion_, [&] {
    definitions.ReplaceQueryResults(std::move(inventory.queryResult.queryToLootNames));
  });
  targets_.inventory.Replace(inventory.playerLoot);
  pending_ = false;
  targets_.publisher.Request();
}

}  // namespace Kest::Client::Loot
