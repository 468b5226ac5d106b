// The controls of the session itself: index, health and idle.
#pragma once

#include "host/controls/control_group.h"
#include "host/session/event_stream.h"
#include "host/session/service_event_thread.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"

namespace Kest::Host {

// What the controls work on. All of it outlives them.
struct SessionParts {
  Scheduler* scheduler;
  ServiceEventThread* serviceEvents;
  EventStream* stream;
  SessionManager* sessions;
  const HostClock* clock;
};

ControlGroup SessionControls(const SessionParts& parts);

}  // namespace Kest::Host
