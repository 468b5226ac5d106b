// The controls that show and switch the auditor.
#pragma once

#include "host/auditor/auditor.h"
#include "host/controls/control_group.h"

namespace Kest::Host {

// `auditor` outlives the controls.
ControlGroup AuditControls(Auditor* auditor);

}  // namespace Kest::Host
