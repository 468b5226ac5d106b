// The checks at a quiet point, one function for each.
#pragma once

#include <cstdint>
#include <set>

#include "host/audit/finding.h"
#include "host/simulation/checks/quiet_state.h"

namespace Kest::Host {

// Runs all of them.
void CheckAll(const QuietState& state, Findings* findings);

// inventory_check.cc: items and counts are the platform's.
void CheckInventory(const QuietState& state, Findings* findings);
void CheckDefinitions(const QuietState& state, Findings* findings);
// responses_check.cc: every read succeeds; what is returned is what was published; no grant is
// shown twice, or after it was dismissed.
void CheckReads(const QuietState& state, Findings* findings);
void CheckItems(const QuietState& state, Findings* findings);
void CheckValues(const QuietState& state, Findings* findings);
void CheckGrants(const QuietState& state, Findings* findings);
std::set<int64_t> ShownGrants(const QuietState& state);  // their ids
// inputs_check.cc: the switches, the new player's check and the grants follow their inputs.
void CheckEnabled(const QuietState& state, Findings* findings);
void CheckReady(const QuietState& state, Findings* findings);
void CheckNewPlayer(const QuietState& state, Findings* findings);
void CheckLoginMessages(const QuietState& state, Findings* findings);
// explanations_check.cc: what the plugin explains is what it does.
void CheckExplanations(const QuietState& state, Findings* findings);
// calls_check.cc: nothing is left open, the subscriptions are those of the state.
void CheckOpenCalls(const QuietState& state, Findings* findings);
void CheckSubscriptions(const QuietState& state, Findings* findings);

}  // namespace Kest::Host
