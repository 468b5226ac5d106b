// The controls of the worlds as wholes: scenarios, reset, snapshots, export and import.
#pragma once

#include "host/controls/control_group.h"
#include "host/scenario/scenarios.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

// Both outlive the controls.
ControlGroup ScenarioControls(Scenarios* scenarios, SessionManager* sessions);

}  // namespace Kest::Host
