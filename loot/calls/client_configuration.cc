#include "loot/calls/client_configuration.h"

#include <functional>
#include <string>
#include <utility>

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/model/loot_constants.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kConfigurationMethod = "getClientConfiguration";
constexpr const char* kRecipeMenuPath = "/tav-loot/v1/recipes/configuration";
constexpr const char* kCurrenciesPath = "/tav-loot/v1/currency-configuration";

// Keeps `received` and publishes it, unless it equals what is held.
template <class T>
void Replace(SiblingClient& client, const char* path, T received, T* held) {
  if (received == *held) return;
  const ResourceChange change = client.MakeChange(path, ResourceEventType::kUpdate, received);
  *held = std::move(received);
  client.Publish(change);
}

}  // namespace

const Api::RecipeMenuConfig& ClientConfiguration::ReadRecipeMenu() {
  PostRequest();
  return recipeMenu_;
}

const Api::CurrencyConfiguration& ClientConfiguration::ReadCurrencies() {
  PostRequest();
  return currencies_;
}

// A task of its own, so that the reader does not wait for the host to accept the request.
void ClientConfiguration::PostRequest() {
  module_.PostTask("LootPlugin.GetClientConfiguration", [this] { Request(); });
}

void ClientConfiguration::Request() {
  const std::function<void(Maybe<Settings>)> onDone = [this](Maybe<Settings> response) {
    OnResponse(std::move(response));
  };
  const std::string failure =
      proxy_.InvokeAsync<Settings>(kLootService, kConfigurationMethod, {}, false, onDone);
  if (!failure.empty()) OnResponse(Failure{failure});
}

void ClientConfiguration::OnResponse(Maybe<Settings> response) {
  if (!response) {
    return LogError("Loot::GetClientConfiguration service async returned error: %s",
                    response.GetFailure().text.c_str());
  }
  Settings& settings = response.GetValue();
  const bool enabled = !settings.lootItemsUsingBreakoutRecipeMenu.empty();
  Replace(client_, kRecipeMenuPath,
          Api::RecipeMenuConfig{enabled, std::move(settings.lootItemsUsingBreakoutRecipeMenu),
                                std::move(settings.lootMaterialsToAlwaysRender)},
          &recipeMenu_);
  Replace(client_, kCurrenciesPath,
          Api::CurrencyConfiguration{std::move(settings.currenciesUsingCapWallets)}, &currencies_);
}

}  // namespace Kest::Client::Loot
