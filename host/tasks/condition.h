// Waiting for a change of what a Mutex guards.
#pragma once

#include <condition_variable>

#include "base/mutex.h"

namespace Kest::Host {

// Threads: any. A wait gives the mutex up meanwhile and may also return without a notification.
class Condition {
 public:
  void NotifyAll() { condition_.notify_all(); }

  void Wait(Mutex& mutex) KEST_REQUIRES(mutex) {
    Lockable lockable{mutex};
    condition_.wait(lockable);
  }
  template <typename TimePoint>
  void WaitUntil(Mutex& mutex, TimePoint time) KEST_REQUIRES(mutex) {
    Lockable lockable{mutex};
    condition_.wait_until(lockable, time);
  }

 private:
  // A Mutex under the names that the standard library calls.
  struct Lockable {
    void lock() KEST_ACQUIRE(mutex) { mutex.Lock(); }
    void unlock() KEST_RELEASE(mutex) { mutex.Unlock(); }
    Mutex& mutex;
  };

  std::condition_variable_any condition_;
};

}  // namespace Kest::Host
