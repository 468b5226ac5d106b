#include <windows.h>

#include <new>

#include "host/tasks/fiber_context.h"

namespace Kest::Host {
namespace {

// Lets the calling thread switch to fibers for a scope; nothing is left of it when the thread ends.
class FiberThread {
 public:
  FiberThread() : self_(ConvertThreadToFiberEx(nullptr, FIBER_FLAG_FLOAT_SWITCH)) {
    if (self_ == nullptr) throw std::bad_alloc();
  }
  ~FiberThread() { ConvertFiberToThread(); }
  FiberThread(const FiberThread&) = delete;
  FiberThread& operator=(const FiberThread&) = delete;

  void* Self() const { return self_; }

 private:
  void* const self_;
};

}  // namespace

struct FiberContext::State {
  Body body;
  void* argument;
  void* inside = nullptr;
  void* outside = nullptr;  // the caller of Enter, while the body runs

  static void CALLBACK Start(void* state) {
    auto* const self = static_cast<State*>(state);
    self->body(self->argument);
  }
};

FiberContext::FiberContext(size_t stackBytes, Body body, void* argument)
    : state_(std::make_unique<State>(State{.body = body, .argument = argument})) {
  // Only the reserve is given: the system adds pages, and a guard page, as the stack grows.
  state_->inside =
      CreateFiberEx(0, stackBytes, FIBER_FLAG_FLOAT_SWITCH, State::Start, state_.get());
  if (state_->inside == nullptr) throw std::bad_alloc();
}

FiberContext::~FiberContext() {
  DeleteFiber(state_->inside);
}

void FiberContext::Enter() {
  const FiberThread thread;
  state_->outside = thread.Self();
  SwitchToFiber(state_->inside);
}

void FiberContext::Leave(bool) {
  SwitchToFiber(state_->outside);
}

}  // namespace Kest::Host
