// ClientConfiguration keeps the service's settings for the recipe menu and the currencies, and asks
// for them anew.
// Threads: module tasks only.
#pragma once

#include "base/maybe_type.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/recipe_resources.h"

namespace Kest::Client {
class ServiceProxy;
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class ClientConfiguration {
 public:
  // Both outlive it.
  ClientConfiguration(ServiceProxy& proxy, SiblingClient& client)
      : proxy_(proxy), client_(client) {}

  // Starts "getClientConfiguration". Its answer is taken when it comes, and each of the two
  // resources is published when it differs; a failure is logged and changes nothing.
  void Request();

  // As last answered; empty lists before.
  const Api::RecipeMenuConfig& recipeMenu() const { return recipeMenu_; }
  const Api::CurrencyConfiguration& currencies() const { return currencies_; }

 private:
  using Answer = SVDS::LootSvdsClientConfigurationDTO;

  void OnAnswer(Maybe<Answer> answer);

  ServiceProxy& proxy_;
  SiblingClient& client_;
  Api::RecipeMenuConfig recipeMenu_;
  Api::CurrencyConfiguration currencies_;
};

}  // namespace Kest::Client::Loot
