#include "loot/calls/grant_notices.h"

#include <algorithm>
#include <array>
#include <utility>

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/wire/loot_dtos.h"
#include "plugin/boundary.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kGrantsPath = "/tav-loot/v1/loot-grants";

constexpr std::array kInGamePhases = {
    Api::GameflowPhase::kReadyCheck,      Api::GameflowPhase::kChampSelect,
    Api::GameflowPhase::kGameStart,       Api::GameflowPhase::kFailedToLaunch,
    Api::GameflowPhase::kInProgress,      Api::GameflowPhase::kReconnect,
    Api::GameflowPhase::kWaitingForStats, Api::GameflowPhase::kPreEndOfGame,
};

}  // namespace

void GrantNotices::Add(Api::LootGrantNotification grant) {
  grant.id = static_cast<int64_t>(nextId_);
  queued_.push_back(std::move(grant));
  ++nextId_;
  if (AllHold(ShownConditions())) RunAndLog("Loot grants", [this] { ShowQueued(); });
}

Maybe<Nothing> GrantNotices::Dismiss(int64_t id) {
  const auto found = std::find_if(shown_.begin(), shown_.end(),
                                  [id](const auto& grant) { return grant.id == id; });
  if (found == shown_.end()) {
    LogWarning("Attempted to dismiss non-existant loot-grant with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  const ResourceChange deleted{kGrantsPath, ResourceEventType::kDelete, {}, true};
  const Api::LootGrantNotification grant = std::move(*found);
  shown_.erase(found);
  client_.Publish(deleted);
  if (grant.msgId.empty()) {
    // There is no message to acknowledge. The wording is fixed, although the grant existed.
    LogWarning("Attempted to dismiss non-existant loot-grant from login data packet with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  Maybe<Nothing> acknowledged = Acknowledge(grant.accountId, grant.msgId);
  if (!acknowledged) {
    LogError("Failed to acknowledge tav-loot notification with id:%s", grant.msgId.c_str());
    return acknowledged;
  }
  LogAlways("Acknowledged tav-loot notification with id:%s", grant.msgId.c_str());
  return Nothing{};
}

void GrantNotices::OnGameflowSession(const Api::GameflowSession& session) {
  const bool inGame =
      std::find(kInGamePhases.begin(), kInGamePhases.end(), session.phase) != kInGamePhases.end();
  SetAllowed(!inGame);
  phase_ = session.phase;
}

void GrantNotices::OnGameflowSessionDeleted() {
  SetAllowed(true);
  phase_.reset();
}

Conditions<1> GrantNotices::ShownConditions() const {
  return {{{"isAllowed", allowed_, "No game is in a phase in which grants wait.",
            "The phase of the game makes grants wait until it is over."}}};
}

Maybe<Nothing> GrantNotices::Acknowledge(uint64_t accountId, const std::string& messageId) {
  const SVDS::LootSimpleDialogMessageResponse response{accountId, messageId, "ack"};
  return proxy_.InvokeSession<Nothing>("clientFacadeService", "callPersistenceMessaging", response);
}

void GrantNotices::SetAllowed(bool allowed) {
  const bool isChanged = allowed != allowed_;
  allowed_ = allowed;
  if (allowed && (isChanged || !queued_.empty())) ShowQueued();
  LogAlways("loot grant notifications set to: %s",
            allowed ? "allowed." : "disallowed. notifications will queue until next allowed.");
}

void GrantNotices::ShowQueued() {
  auto shown = shown_;
  shown.insert(shown.end(), queued_.begin(), queued_.end());
  const ResourceChange change = client_.MakeChange(kGrantsPath, ResourceEventType::kUpdate, shown);
  shown_.swap(shown);
  queued_.clear();
  client_.Publish(change);
}

}  // namespace Kest::Client::Loot
