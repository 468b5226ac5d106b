// The documentation's pages.
#pragma once

#include "host/controls/control_group.h"

namespace Kest::Host {

ControlGroup DocsControls();

}  // namespace Kest::Host
