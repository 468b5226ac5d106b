// Delivers the platform service's events on a thread of its own, each when it is due, so that the
// plugin meets them beside its module tasks as under a real host.
//
// Threads:  any, except that Pause is not called from inside a delivery.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "host/tasks/due_queue.h"

namespace Kest::Host {

class ServiceEvents {
 public:
  struct Event {
    std::string name;
    std::string payload;  // JSON
  };
  // Called on the event thread, one event at a time. Lets no exception out.
  using Deliver = std::function<void(const Event&)>;

  explicit ServiceEvents(Deliver deliver);
  ~ServiceEvents();
  ServiceEvents(const ServiceEvents&) = delete;
  ServiceEvents& operator=(const ServiceEvents&) = delete;

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
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  DueQueue<Event> waiting_;  // guarded by mutex_, as are the next three
  bool delivering_ = false;
  bool paused_ = false;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace Kest::Host
