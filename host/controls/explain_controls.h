// The controls below "/_host/explain": why the plugin decides as it does, in its own words.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

// Each asks the plugin the question of its path. `sessions` outlives the controls.
ControlGroup ExplainControls(SessionManager* sessions);

}  // namespace Kest::Host
