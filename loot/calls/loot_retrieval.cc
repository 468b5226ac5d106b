#include "loot/calls/loot_retrieval.h"

#include <utility>

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
// the request sent.
bool IsNew(int64_t offered, int64_t sent) {
  return offered != SVDS::kLeftOut && offered != sent;
}

// `base` with the lists that are not null in place of its own.
LootDefinitionsPointer WithLists(const LootDefinitionsPointer& base, LootDefinitions::Lists lists) {
  const LootDefinitions::Lists& old = base->lists();
  if (!lists.items && !lists.recipes && !lists.queryResults) return base;
  if (!lists.items) lists.items = old.items;
  if (!lists.recipes) lists.recipes = old.recipes;
  if (!lists.queryResults) lists.queryResults = old.queryResults;
  return std::make_shared<const LootDefinitions>(std::move(lists));
}

}  // namespace

LootRetrieval::Decision LootRetrieval::Decide(bool isForced, int64_t now) const {
  if (!loot_.Enabled()) return {kLootDisabled, false, "Loot is disabled."};
  if (isForced) return {kSuccess, true, "A forced retrieval is never too frequent."};
  if (now < ThrottledUntil()) {
    return {kTooFrequent, false, "The last retrieval was sent less than 3 seconds ago."};
  }
  return {kRequestedAsync, true, "No retrieval was sent in the last 3 seconds."};
}

int64_t LootRetrieval::Now() const {
  return module_.NowSeconds();
}

int64_t LootRetrieval::ThrottledUntil() const {
  return lastRetrieval_ + kInterval;
}

Maybe<std::string> LootRetrieval::Retrieve(std::optional<bool> forced) {
  const bool isForced = forced.value_or(false);
  const int64_t now = Now();
  const Decision decision = Decide(isForced, now);
  if (!decision.isSent) return std::string(decision.result);
  lastRetrieval_ = now;
  if (isForced) return RetrieveAndWait();
  StartRetrieval();
  return std::string(decision.result);
}

void LootRetrieval::Post() {
  module_.PostTask("LootPlugin.RefreshPlayerLoot", [this] {
    // Disabled or too frequent: the store stays as it is, as after a failure, which logs itself.
    static_cast<void>(Retrieve(/*forced=*/false));
  });
}

Preparation<LootRetrieval::Inventory> LootRetrieval::UseOfResponse() {
  return [this, mark = running_.Begin(), sent = held_, base = targets_.definitions,
          retired = std::move(retired_)](Inventory inventory) mutable -> Parts {
    retired.reset();
    return [this, offer = MakeOffer(std::move(inventory), sent, std::move(base)),
            replacement = std::shared_ptr<InventoryReplacement>(), isReplaced = false]() mutable {
      if (replacement == nullptr) replacement = Begin(&offer);
      if (!isReplaced) {
        if (!replacement->Continue()) return false;
        isReplaced = true;
        End(&offer);
      }
      return replacement->FreeSome();
    };
  };
}

Maybe<std::string> LootRetrieval::RetrieveAndWait() {
  const Versions sent = held_;
  const Maybe<Nothing> done = proxy_.InvokeAndWait<Inventory>(
      kLootService, kRetrievalMethod, UseOfResponse(), sent.items, sent.recipes, sent.queryResults);
  if (!done) {
    lastFailure_ = done.GetFailure().text;
    return Failure{Format("Error while calling getAllPlayerLootAndAllDefinitions: %1",
                          done.GetFailure().text)};
  }
  targets_.logos.Load();
  return std::string(kSuccess);
}

void LootRetrieval::StartRetrieval() {
  const Versions sent = held_;
  const std::string failure = proxy_.InvokeAsync<Inventory>(
      kLootService, kRetrievalMethod, {}, false, UseOfResponse(),
      [this](const Failure& reason) { OnFailure(reason); }, sent.items, sent.recipes,
      sent.queryResults);
  if (!failure.empty()) OnFailure({failure});
  targets_.logos.PostLoad();
}

void LootRetrieval::OnFailure(const Failure& failure) {
  LogError("Loot::RetrievePlayerLootAndDefinitions service async returned error: %s",
           failure.text.c_str());
  lastFailure_ = failure.text;
}

LootRetrieval::Offer LootRetrieval::MakeOffer(Inventory inventory, const Versions& sent,
                                              LootDefinitionsPointer base) {
  const Versions offered{inventory.lootItemList.lastUpdate, inventory.recipeList.lastUpdate,
                         inventory.queryResult.lastUpdate};
  LootDefinitions::Lists lists;
  if (IsNew(offered.items, sent.items)) {
    lists.items = MakeLootItems(std::move(inventory.lootItemList.lootItems));
  }
  if (IsNew(offered.recipes, sent.recipes)) {
    lists.recipes = MakeShared(std::move(inventory.recipeList.recipes));
  }
  if (IsNew(offered.queryResults, sent.queryResults)) {
    lists.queryResults = MakeShared(std::move(inventory.queryResult.queryToLootNames));
  }
  LootDefinitionsPointer definitions = WithLists(base, lists);
  return {offered, std::move(lists), std::move(base), std::move(definitions),
          std::move(inventory.playerLoot)};
}

// Another retrieval may have replaced the definitions that the offer was made for.
std::shared_ptr<InventoryReplacement> LootRetrieval::Begin(Offer* offer) const {
  if (offer->base != targets_.definitions) {
    if (offer->versions.items == held_.items) offer->lists.items.reset();
    if (offer->versions.recipes == held_.recipes) offer->lists.recipes.reset();
    if (offer->versions.queryResults == held_.queryResults) offer->lists.queryResults.reset();
    offer->definitions = WithLists(targets_.definitions, offer->lists);
    offer->base = targets_.definitions;
  }
  return std::make_shared<InventoryReplacement>(
      targets_.inventory.Replace(std::move(offer->records), offer->definitions));
}

void LootRetrieval::End(Offer* offer) {
  if (offer->lists.items != nullptr) held_.items = offer->versions.items;
  if (offer->lists.recipes != nullptr) held_.recipes = offer->versions.recipes;
  if (offer->lists.queryResults != nullptr) held_.queryResults = offer->versions.queryResults;
  retired_ = std::move(offer->base);
  pending_ = false;
  lastFailure_.clear();
  targets_.publisher.Request();
}

}  // namespace Kest::Client::Loot
