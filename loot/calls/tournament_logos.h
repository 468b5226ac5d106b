// TournamentLogos reads which tournament logos the player owns: the inventory service answers a
// signed token whose payload lists them. Every failure ends the load quietly after its log line.
// Threads: module tasks only; Load waits.
#pragma once

#include <string_view>

#include "binding/tree/binding_property.h"
#include "client/sibling_client.h"
#include "loot/calls/loot_actions.h"
#include "loot/model/collections.h"

namespace Kest::Client::Loot {

class TournamentLogos {
 public:
  // All outlive it.
  TournamentLogos(SiblingClient& client, Collections& collections, LootActions& actions);

  // Replaces the owned logos by what the token lists and reports the source's answer. The set is
  // emptied once a token has come; a load that fails before leaves it.
  void Load();

 private:
  bool Apply(std::string_view token);
  void ReadLogo(const BindingProperty& element);

  SiblingClient& client_;
  Collections& collections_;
  LootActions& actions_;
};

}  // namespace Kest::Client::Loot
