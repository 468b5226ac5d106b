#include "host/tasks/fiber.h"

#include <cassert>
#include <utility>

#include "host/tasks/fiber_context.h"

namespace Kest::Host {

struct Fiber::State {
  State() : context(kStackBytes, Run, this) {}

  static void Run(void* argument) {
    auto* const state = static_cast<State*>(argument);
    state->isEntered = true;
    while (!state->isEnding) {
      state->work();
      state->work = nullptr;
      state->context.Leave(false);
    }
    state->context.Leave(true);
  }

  FiberContext context;
  std::function<void()> work;
  bool isEntered = false;
  bool isEnding = false;
};

Fiber::Fiber() : state_(std::make_unique<State>()) {}

Fiber::~Fiber() {
  assert(!HasWork());
  state_->isEnding = true;
  if (state_->isEntered) state_->context.Enter();
}

void Fiber::Assign(std::function<void()> work) {
  assert(!HasWork());
  state_->work = std::move(work);
}

bool Fiber::HasWork() const {
  return static_cast<bool>(state_->work);
}

void Fiber::Resume() {
  assert(HasWork());
  state_->context.Enter();
}

void Fiber::Suspend() {
  state_->context.Leave(false);
}

}  // namespace Kest::Host
