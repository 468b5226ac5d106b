// The controls that say what happened: "/_host/timeline" and "/_host/ledger".
#pragma once

#include "host/controls/control_group.h"
#include "host/session/event_stream.h"
#include "host/timeline/traffic.h"

namespace Kest::Host {

// `stream` is that of the timeline's rows. Both outlive the controls.
ControlGroup TimelineControls(const Traffic* traffic, const EventStream* stream);

}  // namespace Kest::Host
