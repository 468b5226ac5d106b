// A stack of its own on which work runs that can be left in the middle and taken up again.
//
// Threads:  made, resumed and destroyed on one thread; the work runs on that thread too.
// Lifetime: a fiber is used again for one piece of work after the other.
#pragma once

#include <cstddef>
#include <functional>

#include "host/tasks/fiber_context.h"

namespace Kest::Host {

class Fiber {
 public:
  // What a plugin may count on; only the pages that were touched take memory.
  static constexpr size_t kStackBytes = size_t{1024} * 1024;

  // Throws std::bad_alloc when there is no stack to be had.
  Fiber();
  // REQUIRES: the fiber has no work.
  ~Fiber();
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;

  // REQUIRES: the fiber has no work. `work` lets no exception out.
  void Assign(std::function<void()> work);
  bool HasWork() const { return static_cast<bool>(work_); }

  // Runs the work up to its next Suspend or to its end.
  // REQUIRES: the fiber has work; not called from inside it.
  void Resume();
  // Leaves the work; returns when the next Resume takes it up. REQUIRES: called from inside it.
  void Suspend() { context_.Leave(false); }

 private:
  static void Run(void* fiber);

  FiberContext context_;
  std::function<void()> work_;
  bool isEntered_ = false;
  bool isEnding_ = false;
};

}  // namespace Kest::Host
