// Delivers the platform service's events on a thread of its own, each when it is due, so that the
// plugin meets them beside its module tasks as under a real host.
//
// Threads:  any, except that Pause is not called from inside a delivery.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
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

  explicit ServiceEventThread(Deliver deliver);
  ~ServiceEventThread();
  ServiceEventThread(const ServiceEventThread&) = delete;
  ServiceEventThread& operator=(const ServiceEventThread&) = delete;

  void Post(std::chrono::milliseconds delay, Event event);
  // Forgets what waits, refuses what comes, and returns when no delivery runs any more.
  void Pause();
  void Resume();
  // Whether nothing waits and nothing is being delivered.
  bool Quiet() const;

 private:
  using Clock = std::chrono::steady_clock;

  void Run();

  const Deliver deliver_;
  mutable Mutex mutex_;  // a leaf: no delivery runs under it
  Condition changed_;
  DueQueue<Event> waiting_ KEST_GUARDED_BY(mutex_);
  bool delivering_ KEST_GUARDED_BY(mutex_) = false;
  bool paused_ KEST_GUARDED_BY(mutex_) = false;
  bool ending_ KEST_GUARDED_BY(mutex_) = false;
  std::thread thread_;
};

}  // namespace Kest::Host
