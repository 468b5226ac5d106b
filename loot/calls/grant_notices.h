// GrantNotices shows loot grants to the player, holds them back during a game, and dismisses them.
// Every change of the shown list is published.
// Threads: module tasks only; Dismiss and Acknowledge wait.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "loot/state/loot_grants.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client {
class ServiceProxy;
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class GrantNotices {
 public:
  // Both outlive it.
  GrantNotices(SiblingClient& client, ServiceProxy& proxy) : client_(client), proxy_(proxy) {}

  const std::vector<Api::LootGrantNotification>& Shown() const { return grants_.Shown(); }

  void Add(Api::LootGrantNotification grant);
  // Removes the grant and acknowledges its message; the acknowledgement's failure is returned. An
  // id that is not shown is logged only.
  Maybe<Nothing> Dismiss(int64_t id);

  // Grants are held back from the ready check until the statistics after the game.
  void OnGameflowSession(const Api::GameflowSession& session);
  void OnGameflowSessionDeleted() { SetAllowed(true); }

  // Reports to the platform that a message need not come again. Any response counts as success.
  Maybe<Nothing> Acknowledge(uint64_t accountId, const std::string& messageId);

 private:
  void SetAllowed(bool allowed);
  void Publish();

  SiblingClient& client_;
  ServiceProxy& proxy_;
  LootGrants grants_;
};

}  // namespace Kest::Client::Loot
