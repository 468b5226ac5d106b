#include <condition_variable>
#include <mutex>

#include "tests/support/baton.h"

namespace Kest::Testing {

struct Baton::State {
  std::mutex mutex;
  std::condition_variable changed;
  bool isTasks = false;
};

Baton::Baton() : state_(std::make_unique<State>()) {}

Baton::~Baton() = default;

void Baton::Give(bool toTask) {
  {
    const std::lock_guard hold(state_->mutex);
    state_->isTasks = toTask;
  }
  state_->changed.notify_one();
}

void Baton::Await(bool byTask) {
  std::unique_lock hold(state_->mutex);
  state_->changed.wait(hold, [&] { return state_->isTasks == byTask; });
}

}  // namespace Kest::Testing
