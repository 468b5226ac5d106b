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

// The change to publish when `received` replaces `held`: nothing when they are equal.
template <class T>
ResourceChange MakeUpdate(const SiblingClient& client, const char* path, const T& received,
                          const T& held) {
  if (received == held) return {{}, ResourceEventType::kUpdate, {}, false};
  return client.MakeChange(path, ResourceEventType::kUpdate, received);
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
  const std::function<void(Settings)> use = [this](Settings settings) {
    Apply(std::move(settings));
  };
  const std::string failure = proxy_.InvokeAsync<Settings>(kLootService, kConfigurationMethod, {},
                                                           false, InOnePart(use), LogFailure);
  if (!failure.empty()) LogFailure({failure});
}

void ClientConfiguration::LogFailure(const Failure& failure) {
  LogError("Loot::GetClientConfiguration service async returned error: %s", failure.text.c_str());
}

void ClientConfiguration::Apply(Settings settings) {
  const bool enabled = !settings.lootItemsUsingBreakoutRecipeMenu.empty();
  Api::RecipeMenuConfig recipeMenu{enabled, std::move(settings.lootItemsUsingBreakoutRecipeMenu),
                                   std::move(settings.lootMaterialsToAlwaysRender)};
  Api::CurrencyConfiguration currencies{std::move(settings.currenciesUsingCapWallets)};
  const ResourceChange ofMenu = MakeUpdate(client_, kRecipeMenuPath, recipeMenu, recipeMenu_);
  const ResourceChange ofCurrencies = MakeUpdate(client_, kCurrenciesPath, currencies, currencies_);
  recipeMenu_ = std::move(recipeMenu);
  currencies_ = std::move(currencies);
  proxy_.EndTurn();
  client_.Publish(ofMenu);
  client_.Publish(ofCurrencies);
}

}  // namespace Kest::Client::Loot
