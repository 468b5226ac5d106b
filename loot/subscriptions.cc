// What the plugin follows, and the handlers. A deleted resource leaves the value it had, except for
// the two sessions.
#include <algorithm>
#include <array>

#include "base/platform.h"
#include "loot/loot_plugin.h"

namespace Kest::Client::Loot {
namespace {

template <class T>
T ValueOf(void (LootPlugin::*)(const T&));

constexpr std::array kInGamePhases = {
    Api::GameflowPhase::kReadyCheck,      Api::GameflowPhase::kChampSelect,
    Api::GameflowPhase::kGameStart,       Api::GameflowPhase::kFailedToLaunch,
    Api::GameflowPhase::kInProgress,      Api::GameflowPhase::kReconnect,
    Api::GameflowPhase::kWaitingForStats, Api::GameflowPhase::kPreEndOfGame,
};

}  // namespace

template <auto kHandler, void (LootPlugin::*kDeleted)()>
void LootPlugin::Follow(std::string_view url) {
  using T = decltype(ValueOf(kHandler));
  client_.Subscribe<T>(url, [this](const T* value, ResourceEventType) {
    if (value != nullptr) {
      (this->*kHandler)(*value);
    } else if constexpr (kDeleted != nullptr) {
      (this->*kDeleted)();
    }
  });
}

struct LootPlugin::Wiring {
  std::string_view source;
  void (LootPlugin::*follow)(std::string_view source);
};

// Followed from top to bottom at start.
void LootPlugin::SubscribeAll() {
  using P = LootPlugin;
  static constexpr Wiring kWirings[] = {
      {"com.kestgames.platform.messaging.persistence.SimpleDialogMessage",
       &P::FollowPlatformMessages},
      {"/tav-platform-config/v1/namespaces/LootConfig/Enabled", &P::Follow<&P::OnConfigEnabled>},
      {"/tav-platform-config/v1/namespaces/LootConfig/PxhEnabled",
       &P::Follow<&P::OnConfigClientEnabled>},
      {"/tav-platform-config/v1/namespaces/LootConfig/InitializationGoalFlags",
       &P::Follow<&P::OnConfigGoal>},
      {"/tav-platform-config/v1/namespaces/LootConfig/MinSummonerLevel",
       &P::Follow<&P::OnConfigMinimumLevel>},
      {"/tav-platform-config/v1/namespaces/LootConfig/NewPlayerChestEnabled",
       &P::Follow<&P::OnConfigNewPlayerChest>},
      {"/tav-summoner/v1/current-summoner", &P::Follow<&P::OnSummoner>},
      {"/tav-login/v1/login-data-packet", &P::Follow<&P::OnLoginDataPacket>},
      {"/tav-login/v1/session", &P::Follow<&P::OnLoginSession, &P::OnLoginSessionDeleted>},
      {"/tav-gameflow/v1/session", &P::Follow<&P::OnGameflowSession, &P::OnGameflowSessionDeleted>},
  };
  for (const Wiring& wiring : kWirings) (this->*wiring.follow)(wiring.source);
}

void LootPlugin::FollowPlatformMessages(std::string_view type) {
  proxy_.SubscribeSvds(
      type, [this](const PluginSvdsEvent& message) { inbound_.OnMasteryGrant(message); });
}

void LootPlugin::OnConfigEnabled(const bool& enabled) {
  state_.status.configEnabled = enabled;
  RecomputeEnabled();
}

void LootPlugin::OnConfigClientEnabled(const bool& enabled) {
  state_.status.clientEnabled = enabled;
  RecomputeEnabled();
}

void LootPlugin::OnConfigGoal(const uint8_t& goal) {
  SetReadiness(0, goal);
}

void LootPlugin::OnConfigMinimumLevel(const uint32_t& level) {
  state_.status.minimumSummonerLevel = level;
  newPlayerChest_.Schedule();
}

void LootPlugin::OnConfigNewPlayerChest(const bool& enabled) {
  state_.status.newPlayerChestEnabled = enabled;
  newPlayerChest_.Schedule();
}

void LootPlugin::OnSummoner(const Api::Summoner& summoner) {
  if (summoner.summonerLevel == state_.status.summonerLevel) return;
  state_.status.summonerLevel = summoner.summonerLevel;
  newPlayerChest_.Check();
}

void LootPlugin::OnLoginDataPacket(const Api::LoginDataPacket& packet) {
  // Without a check: the level in the packet is not news.
  state_.status.summonerLevel = packet.allSummonerData.summonerLevelAndPoints.summonerLevel;
  inbound_.OnLoginDataPacket(packet);
}

void LootPlugin::OnLoginSession(const Api::LoginSession& session) {
  LootStatus& status = state_.status;
  const bool wasConnected = status.connected;
  status.connected = session.state == Api::LoginSessionStates::kSucceeded &&
                     session.accountId != 0 && session.summonerId != 0;
  if (wasConnected || !status.connected) return;
  status.summonerId = session.summonerId;
  status.loginTime = WallClockSeconds();
  sources_.Follow(session.summonerId);
  newPlayerChest_.Schedule();
}

void LootPlugin::OnLoginSessionDeleted() {
  sources_.Drop();
  state_.status.connected = false;
  state_.status.summonerId = 0;
}

void LootPlugin::OnGameflowSession(const Api::GameflowSession& session) {
  const bool inGame =
      std::find(kInGamePhases.begin(), kInGamePhases.end(), session.phase) != kInGamePhases.end();
  SetGrantNotificationsAllowed(!inGame);
}

void LootPlugin::OnGameflowSessionDeleted() {
  SetGrantNotificationsAllowed(true);
}

}  // namespace Kest::Client::Loot
