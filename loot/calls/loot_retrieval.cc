#include "loot/calls/loot_retrieval.h"

#include <functional>
#include <utility>

#include "base/platform.h"
#include "client/service_proxy.h"
#include "log/logger.h"
#include "log/positional_format.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kMethod = "getAllPlayerLootAndAllDefinitions";
constexpr int64_t kInterval = 3;  // seconds between retrievals that are not forced

// Runs `replace` when the list is of another version than the one held, which it then becomes; a
// replacement that fails is offered again next time.
template <class Replace>
void TakeVersion(int64_t offered, int64_t* held, Replace replace) {
  if (offered == *held) return;
  replace();
  *held = offered;
}

}  // namespace

Maybe<std::string> LootRetrieval::Retrieve(bool forced) {
  if (!state_.status.enabled) return std::string(kLootDisabled);
  const int64_t now = WallClockSeconds();
  if (!forced && now < lastRetrieval_ + kInterval) return std::string(kTooFrequent);
  lastRetrieval_ = now;
  if (forced) return RetrieveAndWait();
  StartRetrieval();
  return std::string(kRequestedAsync);
}

Maybe<std::string> LootRetrieval::RetrieveAndWait() {
  Maybe<Answer> answer = proxy_.InvokeAndWait<Answer>(kLootService, kMethod, itemListVersion_,
                                                      recipeListVersion_, queryResultVersion_);
  if (!answer) {
    return Failure{Format("Error while calling getAllPlayerLootAndAllDefinitions: %1",
                          answer.GetFailure().text)};
  }
  Apply(std::move(answer.GetValue()));
  actions_.LoadTournamentLogos();
  return std::string(kSuccess);
}

void LootRetrieval::StartRetrieval() {
  const std::function<void(Maybe<Answer>)> onDone = [this](Maybe<Answer> answer) {
    OnAnswer(std::move(answer));
  };
  const std::string failure =
      proxy_.InvokeAsync<Answer>(kLootService, kMethod, {}, false, onDone, itemListVersion_,
                                 recipeListVersion_, queryResultVersion_);
  if (!failure.empty()) OnAnswer(Failure{failure});
  actions_.PostTournamentLogoLoad();
}

void LootRetrieval::OnAnswer(Maybe<Answer> answer) {
  if (answer) return Apply(std::move(answer.GetValue()));
  LogError("Loot::RetrievePlayerLootAndDefinitions service async returned error: %s",
           answer.GetFailure().text.c_str());
}

void LootRetrieval::Apply(Answer answer) {
  LootDefinitions& definitions = state_.definitions;
  TakeVersion(answer.lootItemList.lastUpdate, &itemListVersion_,
              [&] { definitions.ReplaceItems(std::move(answer.lootItemList.lootItems)); });
  TakeVersion(answer.recipeList.lastUpdate, &recipeListVersion_,
              [&] { definitions.ReplaceRecipes(std::move(answer.recipeList.recipes)); });
  TakeVersion(answer.queryResult.lastUpdate, &queryResultVersion_, [&] {
    definitions.ReplaceQueryResults(std::move(answer.queryResult.queryToLootNames));
  });
  inventory_.Replace(answer.playerLoot);
  state_.status.retrievalPending = false;
  actions_.RequestPublication();
}

}  // namespace Kest::Client::Loot
