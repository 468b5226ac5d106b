// LootSubscriptions wires the events that the plugin follows to the objects that handle them.
// Threads: module tasks only; it does not wait.
#pragma once

#include "loot/calls/forward.h"
#include "loot/calls/player_session.h"
#include "loot/loot_enablement.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

class LootSubscriptions {
 public:
  // Who handles the events; all outlive the subscriptions.
  struct Handlers {
    LootEnablement& enablement;
    SourceReadiness& readiness;
    NewPlayerChest& newPlayerChest;
    PlayerSession& session;
    InboundMessages& messages;
    GrantNotices& grants;
  };
  LootSubscriptions(SiblingClient& client, ServiceProxy& proxy, const Handlers& handlers)
      : client_(client), proxy_(proxy), handlers_(handlers) {}

  // Subscribes to all, in a fixed order.
  void Start();

 private:
  void OnLoginDataPacket(const Api::LoginDataPacket& packet);

  SiblingClient& client_;
  ServiceProxy& proxy_;
  const Handlers handlers_;
};

}  // namespace Kest::Client::Loot
