#include "host/audit/comparisons.h"
#include "host/audit/routes.h"
#include "host/simulation/checks/checks.h"

namespace Kest::Host {

void CheckInventory(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find(kMapPath);
  if (!state.knowsAll || response == state.responses.end()) return;
  const std::string differences =
      Differences(state.held, ReadItemMap(response->second.body).counts);
  if (differences.empty()) return;
  findings->Add("the items and their counts are the platform's", "what the platform holds",
                differences, std::string(kMapPath));
}

// Crossing retrievals leave lists out; whichever is applied, the definitions must not be lost.
void CheckDefinitions(const QuietState& state, Findings* findings) {
  const auto response = state.responses.find("/tav-loot/v1/loot-items");
  if (response == state.responses.end() || response->second.body != "[]") return;
  findings->Add("definitions that were retrieved stay", "loot items", response->second.body);
}

}  // namespace Kest::Host
