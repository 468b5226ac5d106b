// Sets and moves the host's clock, and lets happen what falls due.
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include <chrono>
#include <optional>

#include "base/maybe_type.h"
#include "host/clock/host_clock.h"
#include "host/session/service_event_thread.h"
#include "host/tasks/scheduler.h"
#include "host/timeline/timeline.h"

namespace Kest::Host {

class ClockDriver {
 public:
  // All outlive the driver.
  ClockDriver(HostClock* clock, Scheduler* scheduler, ServiceEventThread* serviceEvents,
              Timeline* timeline)
      : clock_(clock), scheduler_(scheduler), serviceEvents_(serviceEvents), timeline_(timeline) {}

  ClockSetting Show() const { return clock_->Show(); }
  void Set(const ClockSetting& setting);
  // Lets `step` pass on a frozen clock: what falls due meanwhile happens in the order in
  // which it is due, each with all its effects before the next. Returns when all has settled. Other
  // requests begin after it.
  Maybe<Nothing> Advance(std::chrono::milliseconds step);
  // How long the next that waits for the clock still has to wait; nothing when nothing does.
  std::optional<std::chrono::milliseconds> UntilNextDue() const;

 private:
  std::optional<HostTime> NextDue() const;
  void AddRow();

  HostClock* const clock_;
  Scheduler* const scheduler_;
  ServiceEventThread* const serviceEvents_;
  Timeline* const timeline_;
};

}  // namespace Kest::Host
