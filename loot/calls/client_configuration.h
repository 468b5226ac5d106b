// ClientConfiguration keeps the service's settings of the recipe menu and the currencies. Reading
// either requests them again. Threads: module tasks only; nothing waits for the response.
#pragma once

#include "base/maybe_type.h"
#include "loot/calls/forward.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/recipe_resources.h"

namespace Kest::Client::Loot {

class ClientConfiguration {
 public:
  // All outlive it.
  ClientConfiguration(AppModule& module, ServiceProxy& proxy, SiblingClient& client)
      : module_(module), proxy_(proxy), client_(client) {}

  // Each returns the settings last received, empty ones before, and posts a task that calls
  // "getClientConfiguration". Its response is published where it differs; a failure is logged and
  // changes nothing.
  const Api::RecipeMenuConfig& ReadRecipeMenu();
  const Api::CurrencyConfiguration& ReadCurrencies();

 private:
  using Settings = SVDS::LootSvdsClientConfigurationDTO;

  void PostRequest();
  void Request();
  void Apply(Settings settings);
  static void LogFailure(const Failure& failure);

  AppModule& module_;
  ServiceProxy& proxy_;
  SiblingClient& client_;
  Api::RecipeMenuConfig recipeMenu_;
  Api::CurrencyConfiguration currencies_;
};

}  // namespace Kest::Client::Loot
