#include "host/tasks/fiber.h"

#include <cassert>
#include <utility>

namespace Kest::Host {

Fiber::Fiber() : context_(kStackBytes, Run, this) {}

Fiber::~Fiber() {
  assert(!HasWork());
  isEnding_ = true;
  if (isEntered_) context_.Enter();
}

void Fiber::Run(void* fiber) {
  auto* const self = static_cast<Fiber*>(fiber);
  self->isEntered_ = true;
  while (!self->isEnding_) {
    self->work_();
    self->work_ = nullptr;
    self->context_.Leave(false);
  }
  self->context_.Leave(true);
}

void Fiber::Assign(std::function<void()> work) {
  assert(!HasWork());
  work_ = std::move(work);
}

void Fiber::Resume() {
  assert(HasWork());
  context_.Enter();
}

}  // namespace Kest::Host
