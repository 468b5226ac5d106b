// Following a stream of events, and the control that follows what the plugin publishes.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/event_stream.h"

namespace Kest::Host {

// A stream of what comes after the event that the request names, or of what is new. `stream`
// outlives it.
HttpResponse FollowStream(const EventStream* stream, const HostCall& call);

// `stream` outlives the controls and the streams they return.
ControlGroup EventControls(const EventStream* stream);

}  // namespace Kest::Host
