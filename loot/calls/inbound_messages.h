// InboundMessages turns what the platform pushes into loot grants: champion mastery grants as they
// happen, and those that waited in the login data packet. Malformed messages are logged and
// dropped. Threads: module tasks only; OnLoginDataPacket waits.
#pragma once

#include <cstddef>
#include <vector>

#include "loot/calls/forward.h"
#include "loot/wire/sibling_resources.h"
#include "plugin/plugin_events.h"

namespace Kest::Client::Loot {

class InboundMessages {
 public:
  // Borrows the grants, which outlive it.
  explicit InboundMessages(GrantNotices& grants) : grants_(grants) {}

  // A platform message. Only "championMasteryLootGrant" is read; its body is a JSON object, or a
  // string that holds one.
  void OnMasteryGrant(const PluginSvdsEvent& event);

  // The messages that waited for the login. Grants for a reason the player is shown are read as
  // above, the others are acknowledged.
  void OnLoginDataPacket(const Api::LoginDataPacket& packet);

 private:
  void OnLoginMessage(const Api::LoginSimpleMessage& message);

  GrantNotices& grants_;
  // The messages of a packet that were handled before memory ended, by their hash: the packet comes
  // again, and none of them is handled twice.
  std::vector<size_t> handled_;
};

}  // namespace Kest::Client::Loot
