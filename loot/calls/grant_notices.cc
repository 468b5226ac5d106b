#include "loot/calls/grant_notices.h"

#include <algorithm>
#include <array>
#include <utility>

#include "client/service_proxy.h"
#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/wire/loot_dtos.h"

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
  if (grants_.Add(std::move(grant))) Publish();
}

Maybe<Nothing> GrantNotices::Dismiss(int64_t id) {
  const std::optional<Api::LootGrantNotification> grant = grants_.Remove(id);
  if (!grant) {
    LogWarning("Attempted to dismiss non-existant loot-grant with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  client_.PublishDelete(kGrantsPath);
  if (grant->msgId.empty()) {
    // There is no message to acknowledge. The wording is fixed, although the grant existed.
    LogWarning("Attempted to dismiss non-existant loot-grant from login data packet with id:%lli",
               static_cast<long long>(id));
    return Nothing{};
  }
  Maybe<Nothing> acknowledged = Acknowledge(grant->accountId, grant->msgId);
  if (acknowledged) {
    LogAlways("Acknowledged tav-loot notification with id:%s", grant->msgId.c_str());
  } else {
    LogError("Failed to acknowledge tav-loot notification with id:%s", grant->msgId.c_str());
  }
  return acknowledged;
}

void GrantNotices::OnGameflowSession(const Api::GameflowSession& session) {
  const bool inGame =
      std::find(kInGamePhases.begin(), kInGamePhases.end(), session.phase) != kInGamePhases.end();
  SetAllowed(!inGame);
}

Maybe<Nothing> GrantNotices::Acknowledge(uint64_t accountId, const std::string& messageId) {
  const SVDS::LootSimpleDialogMessageResponse response{accountId, messageId, "ack"};
  return proxy_.InvokeSession<Nothing>("clientFacadeService", "callPersistenceMessaging", response);
}

void GrantNotices::SetAllowed(bool allowed) {
  if (grants_.SetAllowed(allowed)) Publish();
}

void GrantNotices::Publish() {
  client_.Publish(kGrantsPath, ResourceEventType::kUpdate, Shown());
}

}  // namespace Kest::Client::Loot
