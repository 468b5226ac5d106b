#include <algorithm>

#include "host/simulation/checks/checks.h"

namespace Kest::Host {
namespace {

// What the plugin follows from start to stop.
constexpr std::string_view kAlways[] = {
    "OnJsonApiEvent_/tav-gameflow/v1/session",
    "OnJsonApiEvent_/tav-login/v1/login-data-packet",
    "OnJsonApiEvent_/tav-login/v1/session",
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/Enabled",
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/InitializationGoalFlags",
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/MinSummonerLevel",
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/NewPlayerChestEnabled",
    "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/PxhEnabled",
    "OnJsonApiEvent_/tav-summoner/v1/current-summoner",
    "OnServiceProxyAsyncEvent",
    "OnServiceProxyMethodEvent",
    "OnServiceProxyUuidEvent",
    "OnSvdsEvent_com.kestgames.platform.messaging.persistence.SimpleDialogMessage"};

std::string Join(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += name + " ";
  return text;
}

}  // namespace

void CheckOpenCalls(const QuietState& state, Findings* findings) {
  if (state.openRequests == 0 && state.openAsks <= state.lostResponses &&
      state.waitingTasks <= state.lostResponses) {
    return;
  }
  findings->Add(
      "no call is left open",
      "at most " + std::to_string(state.lostResponses) + " calls, whose responses were lost",
      std::to_string(state.openAsks) + " requests to the plugin, " +
          std::to_string(state.openRequests) + " of the plugin, " +
          std::to_string(state.waitingTasks) + " tasks that wait");
}

void CheckSubscriptions(const QuietState& state, Findings* findings) {
  std::vector<std::string> expected(std::begin(kAlways), std::end(kAlways));
  const std::string& summoner = state.inputs.FollowedSummoner();
  if (!summoner.empty()) {
    const std::string prefix = "OnJsonApiEvent_/tav-";
    expected.push_back(prefix + "champions/v1/inventories/" + summoner + "/champions-minimal");
    expected.push_back(prefix + "collections/v1/inventories/" + summoner + "/ward-skins");
    expected.push_back(prefix + "collections/v1/inventories/" + summoner + "/summoner-icons");
    expected.push_back(prefix + "inventory/v1/inventory/emotes");
  }
  std::sort(expected.begin(), expected.end());
  if (state.subscriptions == expected) return;
  findings->Add("the subscriptions are those of the session", Join(expected),
                Join(state.subscriptions));
}

}  // namespace Kest::Host
