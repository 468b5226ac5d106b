#include <boost/context/fiber.hpp>
#include <boost/context/preallocated.hpp>
#include <boost/context/protected_fixedsize_stack.hpp>
#include <cstdint>
#include <new>
#include <utility>

#include "host/tasks/fiber_context.h"
#include "host/tasks/fiber_switch.h"

namespace Kest::Host {
namespace {

using boost::context::fiber;

// Forgets a context that is never entered again. Its destructor would unwind the stack by an
// exception; ours has nothing to unwind, and its memory is given back by its owner.
void Forget(fiber&& context) {
  alignas(fiber) unsigned char neverDestroyed[sizeof(fiber)];
  new (neverDestroyed) fiber(std::move(context));
}

// The stack's owner is the State, so the context itself releases nothing.
struct KeepStack {
  boost::context::stack_context allocate() { return {}; }
  void deallocate(boost::context::stack_context&) {}
};

const void* BottomOf(const boost::context::stack_context& stack) {
  return static_cast<const uint8_t*>(stack.sp) - stack.size;
}

// On 32-bit x86 a fiber begins with a stack that is aligned to less than what compilers count on.
#if defined(__i386__)
[[gnu::force_align_arg_pointer, gnu::noinline]]
#endif
void CallBody(FiberContext::Body body, void* argument) {
  body(argument);
}

}  // namespace

struct FiberContext::State {
  explicit State(size_t stackBytes)
      : allocator(stackBytes), stack(allocator.allocate()), notes(BottomOf(stack), stack.size) {}
  ~State() { allocator.deallocate(stack); }

  boost::context::protected_fixedsize_stack allocator;
  boost::context::stack_context stack;
  FiberSwitch notes;
  fiber inside;   // the body, while it is left
  fiber outside;  // the caller of Enter, while the body runs
};

FiberContext::FiberContext(size_t stackBytes, Body body, void* argument)
    : state_(std::make_unique<State>(stackBytes)) {
  State* state = state_.get();
  const boost::context::preallocated place(state->stack.sp, state->stack.size, state->stack);
  state->inside =
      fiber(std::allocator_arg, place, KeepStack{}, [state, body, argument](fiber&& from) {
        state->outside = std::move(from);
        state->notes.ArriveInside();
        CallBody(body, argument);
        return std::move(state->outside);  // not reached: the body leaves for good
      });
}

FiberContext::~FiberContext() {
  Forget(std::move(state_->inside));
}

void FiberContext::Enter() {
  state_->notes.LeaveOutside();
  state_->inside = std::move(state_->inside).resume();
  state_->notes.ArriveOutside();
}

void FiberContext::Leave(bool forGood) {
  state_->notes.LeaveInside(forGood);
  state_->outside = std::move(state_->outside).resume();
  state_->notes.ArriveInside();
}

}  // namespace Kest::Host
