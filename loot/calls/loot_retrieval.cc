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

// Whether the response holds a list of its own. The service leaves out a list of the version that
// the request sent; and what is held already need not be replaced.
bool IsNew(int64_t offered, int64_t sent, int64_t held) {
  return offered != SVDS::kLeftOut && offered != sent && offered != held;
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
  const Versions sent = held_;
  const std::function<void(Inventory)> use = [&](Inventory inventory) {
    Apply(std::move(inventory), sent);
  };
  const Maybe<Nothing> done = proxy_.InvokeAndWait<Inventory>(
      kLootService, kRetrievalMethod, InOnePart(use), sent.items, sent.recipes, sent.queryResults);
  if (!done) {
    return Failure{Format("Error while calling getAllPlayerLootAndAllDefinitions: %1",
                          done.GetFailure().text)};
  }
  targets_.logos.Load();
  return std::string(kSuccess);
}

void LootRetrieval::StartRetrieval() {
  const Versions sent = held_;
  const std::function<void(Inventory)> use = [this, sent](Inventory inventory) {
    Apply(std::move(inventory), sent);
  };
  const std::string failure =
      proxy_.InvokeAsync<Inventory>(kLootService, kRetrievalMethod, {}, false, InOnePart(use),
                                    LogFailure, sent.items, sent.recipes, sent.queryResults);
  if (!failure.empty()) LogFailure({failure});
  targets_.logos.PostLoad();
}

void LootRetrieval::LogFailure(const Failure& failure) {
  LogError("Loot::RetrievePlayerLootAndDefinitions service async returned error: %s",
           failure.text.c_str());
}

// The definitions, then the items assembled from them, then what depends on these: all is made
// before anything is replaced.
void LootRetrieval::Apply(Inventory inventory, const Versions& sent) {
  Versions versions = held_;
  LootDefinitions::Lists lists = targets_.definitions->lists();
  if (IsNew(inventory.lootItemList.lastUpdate, sent.items, held_.items)) {
    versions.items = inventory.lootItemList.lastUpdate;
    lists.items = MakeLootItems(std::move(inventory.lootItemList.lootItems));
  }
  if (IsNew(inventory.recipeList.lastUpdate, sent.recipes, held_.recipes)) {
    versions.recipes = inventory.recipeList.lastUpdate;
    lists.recipes = MakeShared(std::move(inventory.recipeList.recipes));
  }
  if (IsNew(inventory.queryResult.lastUpdate, sent.queryResults, held_.queryResults)) {
    versions.queryResults = inventory.queryResult.lastUpdate;
    lists.queryResults = MakeShared(std::move(inventory.queryResult.queryToLootNames));
  }
  LootDefinitionsPointer definitions = targets_.definitions;
  if (!(versions == held_)) definitions = std::make_shared<const LootDefinitions>(std::move(lists));
  targets_.inventory.Replace(inventory.playerLoot, std::move(definitions));
  held_ = versions;
  pending_ = false;
  targets_.publisher.Request();
}

}  // namespace Kest::Client::Loot
