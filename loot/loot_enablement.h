// LootEnablement follows the two switches of loot. When they enable or disable it, that is logged,
// the new-player check is scheduled, and "/tav-loot/v1/enabled" is published, in this order.
// Threads: module tasks only; it does not wait.
#pragma once

#include "loot/calls/forward.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {

class LootEnablement {
 public:
  // All outlive it.
  LootEnablement(SiblingClient& client, LootSwitch& loot, NewPlayerChest& newPlayerChest)
      : client_(client), loot_(loot), newPlayerChest_(newPlayerChest) {}

  void SetConfigEnabled(bool enabled) { Set(&LootSwitch::configEnabled, enabled); }
  void SetClientEnabled(bool enabled) { Set(&LootSwitch::clientEnabled, enabled); }

 private:
  void Set(bool LootSwitch::*value, bool enabled);

  SiblingClient& client_;
  LootSwitch& loot_;
  NewPlayerChest& newPlayerChest_;
};

}  // namespace Kest::Client::Loot
