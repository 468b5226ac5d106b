#include "host/simulation/checks/checks.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

std::string_view Word(bool value) {
  return value ? "true" : "false";
}

void Compare(const QuietState& state, std::string_view path, bool expected, std::string check,
             Findings* findings) {
  const auto response = state.responses.find(path);
  if (response == state.responses.end() || response->second.body == Word(expected)) return;
  findings->Add(std::move(check), std::string(path) + " " + std::string(Word(expected)),
                response->second.body);
}

}  // namespace

void CheckEnabled(const QuietState& state, Findings* findings) {
  Compare(state, "/tav-loot/v1/enabled", state.inputs.IsEnabled(),
          "loot is enabled while both switches are on", findings);
}

void CheckReady(const QuietState& state, Findings* findings) {
  const auto ready = state.inputs.IsReady();
  if (!ready) return;
  Compare(state, "/tav-loot/v1/ready", *ready, "ready follows the sources that were read",
          findings);
}

// It counts as done when the platform was asked, or because a user said so.
void CheckNewPlayer(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/new-player-check-done");
  if (response == state.responses.end() || response->second.body != "true") return;
  const std::string call = std::string(kLootService) + "." + std::string(kNewPlayerChestMethod);
  if (state.inputs.IsSaidToBeDone() || state.platform["serviceCalls"].contains(call)) return;
  findings->Add("the new player's check is done once the platform was asked", "false", "true");
}

void CheckLoginMessages(const QuietState& state, Findings* findings) {
  constexpr int64_t kGame = 21;  // of the only message of the packet that becomes a grant
  const auto response = state.responses.find("/tav-loot/v1/loot-grants");
  if (response == state.responses.end() || response->second.status != 200) return;
  int shown = 0;
  for (const Json& grant : ParseJson(response->second.body)) shown += grant["gameId"] == kGame;
  if (shown <= state.inputs.LoginPackets()) return;
  findings->Add("a login's message becomes one grant",
                "at most " + std::to_string(state.inputs.LoginPackets()), std::to_string(shown));
}

}  // namespace Kest::Host
