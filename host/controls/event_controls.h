// The control that follows what the plugin publishes.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/event_stream.h"

namespace Kest::Host {

// `stream` outlives the controls and the streams they return.
ControlGroup EventControls(const EventStream* stream);

}  // namespace Kest::Host
