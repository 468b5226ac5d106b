#include <windows.h>

#include "tests/support/baton.h"

namespace Kest::Testing {

// The system's own lock and condition: the C++ library builds its on semaphores, and a test hands
// the baton on thousands of times.
struct Baton::State {
  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
  bool isTasks = false;
};

Baton::Baton() : state_(std::make_unique<State>()) {}

Baton::~Baton() = default;

void Baton::Give(bool toTask) {
  AcquireSRWLockExclusive(&state_->lock);
  state_->isTasks = toTask;
  ReleaseSRWLockExclusive(&state_->lock);
  WakeConditionVariable(&state_->changed);
}

void Baton::Await(bool byTask) {
  AcquireSRWLockExclusive(&state_->lock);
  while (state_->isTasks != byTask) {
    SleepConditionVariableSRW(&state_->changed, &state_->lock, INFINITE, 0);
  }
  ReleaseSRWLockExclusive(&state_->lock);
}

}  // namespace Kest::Testing
