// One stack of its own, and the two switches between it and its caller: Boost.Context where
// there is a library of it, the system's fibers on Windows.
//
// Threads: made, entered and destroyed on one thread.
#pragma once

#include <cstddef>
#include <memory>

namespace Kest::Host {

class FiberContext {
 public:
  // The first Enter calls `body(argument)` on the new stack. It ends by leaving for good; it never
  // returns and lets no exception out.
  using Body = void (*)(void* argument);

  // Throws std::bad_alloc when there is no stack to be had.
  FiberContext(size_t stackBytes, Body body, void* argument);
  // Gives the stack back. REQUIRES: the body was never entered, or has left for good.
  ~FiberContext();
  FiberContext(const FiberContext&) = delete;
  FiberContext& operator=(const FiberContext&) = delete;

  // Runs the body up to its next Leave. REQUIRES: called from outside, by a thread that is in no
  // fiber.
  void Enter();
  // Returns when the body is entered again. `forGood`: it never is. REQUIRES: called from the body.
  void Leave(bool forGood);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace Kest::Host
