#include "host/simulation/checks/checks.h"

namespace Kest::Host {

void CheckAll(const QuietState& state, Findings* findings) {
  constexpr void (*kChecks[])(const QuietState&, Findings*) = {
      CheckOpenCalls, CheckSubscriptions, CheckReads,       CheckItems,   CheckValues,
      CheckGrants,    CheckInventory,     CheckDefinitions, CheckEnabled, CheckReady,
      CheckNewPlayer, CheckLoginMessages, CheckExplanations};
  for (const auto check : kChecks) check(state, findings);
}

}  // namespace Kest::Host
