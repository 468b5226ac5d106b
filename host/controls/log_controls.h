// The controls of the log: the plugin's newest lines, and from which level on it writes any.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/host_log.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

// Both outlive the controls.
ControlGroup LogControls(HostLog* log, SessionManager* sessions);

}  // namespace Kest::Host
