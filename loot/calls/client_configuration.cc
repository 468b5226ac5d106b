#include "loot/calls/client_configuration.h"

#include <functional>
#include <string>
#include <utility>

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kMethod = "getClientConfiguration";
constexpr const char* kRecipeMenuPath = "/tav-loot/v1/recipes/configuration";
constexpr const char* kCurrenciesPath = "/tav-loot/v1/currency-configuration";

// Keeps `fresh` and publishes it, unless it is what is held already.
template <class T>
void Take(SiblingClient& client, const char* path, T fresh, T* held) {
  if (fresh == *held) return;
  *held = std::move(fresh);
  client.Publish(path, ResourceEventType::kUpdate, *held);
}

}  // namespace

void ClientConfiguration::Request() {
  const std::function<void(Maybe<Answer>)> onDone = [this](Maybe<Answer> answer) {
    OnAnswer(std::move(answer));
  };
  const std::string failure = proxy_.InvokeAsync<Answer>(kLootService, kMethod, {}, false, onDone);
  if (!failure.empty()) OnAnswer(Failure{failure});
}

void ClientConfiguration::OnAnswer(Maybe<Answer> answer) {
  if (!answer) {
    return LogError("Loot::GetClientConfiguration service async returned error: %s",
                    answer.GetFailure().text.c_str());
  }
  Answer& lists = answer.GetValue();
  const bool enabled = !lists.lootItemsUsingBreakoutRecipeMenu.empty();
  Take(client_, kRecipeMenuPath,
       Api::RecipeMenuConfig{enabled, std::move(lists.lootItemsUsingBreakoutRecipeMenu),
                             std::move(lists.lootMaterialsToAlwaysRender)},
       &recipeMenu_);
  Take(client_, kCurrenciesPath,
       Api::CurrencyConfiguration{std::move(lists.currenciesUsingCapWallets)}, &currencies_);
}

}  // namespace Kest::Client::Loot
