// Delivers the platform service's events on a thread of its own, each when it is due, so that the
// plugin meets them beside its module tasks as under a real host. While the host's clock is frozen
// they come one at a time, when DeliverOne is called.
//
// Threads:  any, except that Pause is not called from inside a delivery.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "base/mutex.h"
#include "host/tasks/condition.h"
#include "host/tasks/due_queue.h"

namespace Kest::Host {

class ServiceEventThread {
 public:
  struct Event {
    std::string name;
    std::string payload;  // JSON
    uint64_t cause = 0;   // what it follows from
  };
  // Called on the event thread, one event at a time. Lets no exception out.
  using Deliver = std::function<void(const Event&)>;

  // `clock` outlives the thread. `delivered` is called on the event thread after an event that came
  // while the clock ran, when Quiet can hold again.
  explicit ServiceEventThread(Deliver deliver, const HostClock& clock = HostClock::Real(),
                              std::function<void()> delivered = {});
  ~ServiceEventThread();
  ServiceEventThread(const ServiceEventThread&) = delete;
  ServiceEventThread& operator=(const ServiceEventThread&) = delete;

  void Post(std::chrono::milliseconds delay, Event event);
  // The clock has been set or moved.
  void NoteClock();
  // With a frozen clock: delivers the first event that is due, on the event thread, and
  // returns when that has been done. False: there is none.
  bool DeliverOne();
  // When the next event is due, or nothing when none waits.
  std::optional<HostTime> NextDue() const;
  // Forgets what waits, refuses what comes, and returns when no delivery runs any more.
  void Pause();
  void Resume();
  // Whether nothing waits and nothing is being delivered.
  bool Quiet() const;

 private:
  void Run();
  bool IsDueLocked() const KEST_REQUIRES(mutex_);
  void WaitLocked() KEST_REQUIRES(mutex_);

  const Deliver deliver_;
  const HostClock& clock_;
  const std::function<void()> delivered_;
  mutable Mutex mutex_;  // before the clock's; no delivery runs under it
  Condition changed_;
  DueQueue<Event> waiting_ KEST_GUARDED_BY(mutex_);
  bool mayDeliver_ KEST_GUARDED_BY(mutex_) = false;  // one event, though the clock is frozen
  bool delivering_ KEST_GUARDED_BY(mutex_) = false;
  bool paused_ KEST_GUARDED_BY(mutex_) = false;
  bool ending_ KEST_GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

}  // namespace Kest::Host
