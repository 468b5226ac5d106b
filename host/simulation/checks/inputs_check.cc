#include "host/simulation/checks/checks.h"

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

}  // namespace Kest::Host
