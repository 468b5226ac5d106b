#include "host/fiber.h"

#include <boost/context/fiber.hpp>
#include <boost/context/preallocated.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>
#include <cassert>
#include <cstdint>
#include <new>
#include <utility>

#include "host/fiber_switch.h"

namespace Kest::Host {
namespace {

using boost::context::fiber;

// Forgets a context that nobody enters again. Its destructor would unwind the stack by an
// exception; ours has nothing to unwind, and its memory is given back by its owner.
void Forget(fiber&& context) {
  alignas(fiber) unsigned char grave[sizeof(fiber)];
  new (grave) fiber(std::move(context));
}

// The stack's owner is the State, so the context itself releases nothing.
struct KeepStack {
  boost::context::stack_context allocate() { return {}; }
  void deallocate(boost::context::stack_context&) {}
};

const void* BottomOf(const boost::context::stack_context& stack) {
  return static_cast<const uint8_t*>(stack.sp) - stack.size;
}

}  // namespace

struct Fiber::State {
  State() : stack(allocator.allocate()), notes(BottomOf(stack), stack.size) {}
  ~State() { allocator.deallocate(stack); }

  void Enter() {
    notes.LeaveOutside();
    inside = std::move(inside).resume();
    notes.ArriveOutside();
  }
  void Leave(bool forGood) {
    notes.LeaveInside(forGood);
    outside = std::move(outside).resume();
    notes.ArriveInside();
  }

  boost::context::protected_fixedsize_stack allocator{kStackBytes};
  boost::context::stack_context stack;
  FiberSwitch notes;
  fiber inside;   // the work, while it is left
  fiber outside;  // whoever resumed the work, while it runs
  std::function<void()> work;
  bool ending = false;
};

Fiber::Fiber() : state_(std::make_unique<State>()) {
  State* state = state_.get();
  const boost::context::preallocated place(state->stack.sp, state->stack.size, state->stack);
  state->inside = fiber(std::allocator_arg, place, KeepStack{}, [state](fiber&& from) -> fiber {
    state->outside = std::move(from);
    state->notes.ArriveInside();
    while (!state->ending) {
      state->work();
      state->work = nullptr;
      state->Leave(false);
    }
    state->Leave(true);
    return std::move(state->outside);  // not reached: nobody enters after `ending`
  });
}

Fiber::~Fiber() {
  assert(!HasWork());
  state_->ending = true;
  if (state_->inside) state_->Enter();
  Forget(std::move(state_->inside));
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
  state_->Enter();
}

void Fiber::Suspend() {
  state_->Leave(false);
}

}  // namespace Kest::Host
