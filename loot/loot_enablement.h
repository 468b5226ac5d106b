// LootEnablement follows the two switches of loot. When they enable or disable it, that is logged,
// the new-player check is scheduled, and "/tav-loot/v1/enabled" is published, in this order; a
// publication is requested when menus are watched, which show what is enabled.
// Threads: module tasks only; it does not wait.
#pragma once

#include "loot/calls/forward.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {

class LootEnablement {
 public:
  // All outlive it.
  LootEnablement(SiblingClient& client, LootSwitch& loot, NewPlayerChest& newPlayerChest,
                 const WatchedViews& views, LootPublisher& publisher)
      : client_(client),
        loot_(loot),
        newPlayerChest_(newPlayerChest),
        views_(views),
        publisher_(publisher) {}

  void SetConfigEnabled(bool enabled) { Set(&LootSwitch::configEnabled, enabled); }
  void SetClientEnabled(bool enabled) { Set(&LootSwitch::clientEnabled, enabled); }

 private:
  void Set(bool LootSwitch::*value, bool enabled);

  SiblingClient& client_;
  LootSwitch& loot_;
  NewPlayerChest& newPlayerChest_;
  const WatchedViews& views_;
  LootPublisher& publisher_;
  bool isKnownEnabled_ = false;  // what was published last
};

}  // namespace Kest::Client::Loot
