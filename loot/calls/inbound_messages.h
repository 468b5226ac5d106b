// InboundMessages turns what the platform pushes into loot grants: champion mastery grants as they
// happen, and those that waited in the login data packet. Malformed messages are logged and
// dropped. Threads: module tasks only; OnLoginDataPacket and Acknowledge wait.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "client/service_proxy.h"
#include "loot/calls/loot_actions.h"
#include "loot/wire/sibling_resources.h"
#include "plugin/plugin_events.h"

namespace Kest::Client::Loot {

class InboundMessages {
 public:
  // Both outlive it.
  InboundMessages(ServiceProxy& proxy, LootActions& actions);

  // A platform message. Only "championMasteryLootGrant" is taken; its body is a JSON object, or a
  // text that holds one.
  void OnMasteryGrant(const PluginSvdsEvent& event);

  // The messages that waited for the login. Grants for a reason the player is shown are taken as
  // above, the others are acknowledged. Does not touch the summoner level.
  void OnLoginDataPacket(const Api::LoginDataPacket& packet);

  // Tells the platform that a message need not come again. Any answer counts as success.
  Maybe<Nothing> Acknowledge(uint64_t accountId, const std::string& messageId);

 private:
  void OnLoginMessage(const Api::LoginSimpleMessage& message);

  ServiceProxy& proxy_;
  LootActions& actions_;
};

}  // namespace Kest::Client::Loot
