// The controls that say whether the plugin is ready, and wait for what it publishes.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/event_stream.h"
#include "host/session/readiness.h"
#include "host/tasks/scheduler.h"

namespace Kest::Host {

// What the controls work on. All of it outlives them.
struct WaitParts {
  Scheduler* scheduler;
  const EventStream* stream;
  Readiness* readiness;
};

ControlGroup WaitControls(const WaitParts& parts);

}  // namespace Kest::Host
