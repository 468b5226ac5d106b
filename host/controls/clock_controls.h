// The controls of the host's clock: what it shows, how it runs, and letting time pass.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/clock_driver.h"

namespace Kest::Host {

// `driver` outlives the controls.
ControlGroup ClockControls(ClockDriver* driver);

}  // namespace Kest::Host
