// The files of the browser console.
#pragma once

#include "host/controls/control_group.h"

namespace Kest::Host {

ControlGroup ConsoleControls();

}  // namespace Kest::Host
