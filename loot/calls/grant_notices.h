// GrantNotices shows loot grants of finished games to the player, queues them during a game, and
// dismisses them. Ids are 0, 1, 2, ... in order of arrival. Every change of the shown list is
// published. Threads: module tasks only; Dismiss and Acknowledge wait.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "loot/calls/forward.h"
#include "loot/model/condition.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

class GrantNotices {
 public:
  // Both outlive it.
  GrantNotices(SiblingClient& client, ServiceProxy& proxy) : client_(client), proxy_(proxy) {}

  const std::vector<Api::LootGrantNotification>& Shown() const { return shown_; }

  // Gives the grant its id, and shows or queues it. One that cannot be shown for lack of memory is
  // shown with the next.
  void Add(Api::LootGrantNotification grant);

  // Removes the grant and acknowledges its message; returns the acknowledgement's failure, always
  // as one of status 500. An id
  // that is not shown is logged only.
  Maybe<Nothing> Dismiss(int64_t id);

  // Grants are queued from the ready check until the statistics after the game, then shown after
  // the others.
  void OnGameflowSession(const Api::GameflowSession& session);
  void OnGameflowSessionDeleted();

  // Queued grants, in the order in which they will be shown.
  const std::vector<Api::LootGrantNotification>& Queued() const { return queued_; }
  // Of the game that is on; nothing when there is none.
  std::optional<Api::GameflowPhase> Phase() const { return phase_; }
  // What showing a grant needs.
  Conditions<1> ShownConditions() const;

  // Reports to the platform that a message need not come again. Any response counts as success.
  Maybe<Nothing> Acknowledge(uint64_t accountId, const std::string& messageId);

 private:
  void SetAllowed(bool allowed);
  // Appends what is queued to the shown list and publishes it; changes nothing when memory runs
  // out.
  void ShowQueued();

  SiblingClient& client_;
  ServiceProxy& proxy_;
  bool allowed_ = true;
  std::optional<Api::GameflowPhase> phase_;
  uint64_t nextId_ = 0;
  std::vector<Api::LootGrantNotification> shown_;
  std::vector<Api::LootGrantNotification> queued_;
};

}  // namespace Kest::Client::Loot
