#include "host/session/service_events.h"

#include <utility>

namespace Kest::Host {

ServiceEvents::ServiceEvents(Deliver deliver)
    : deliver_(std::move(deliver)), thread_([this] { Run(); }) {}

ServiceEvents::~ServiceEvents() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void ServiceEvents::Post(std::chrono::milliseconds delay, Event event) {
  {
    const std::lock_guard lock(mutex_);
    if (paused_ || ending_) return;
    waiting_.Put(Clock::now() + delay, std::move(event));
  }
  changed_.notify_all();
}

void ServiceEvents::Pause() {
  std::unique_lock lock(mutex_);
  paused_ = true;
  waiting_.Clear();
  changed_.wait(lock, [this] { return !delivering_; });
}

void ServiceEvents::Resume() {
  const std::lock_guard lock(mutex_);
  paused_ = false;
}

bool ServiceEvents::Quiet() const {
  const std::lock_guard lock(mutex_);
  return waiting_.Empty() && !delivering_;
}

void ServiceEvents::Run() {
  std::unique_lock lock(mutex_);
  while (!ending_) {
    const auto event = waiting_.Take(Clock::now());
    if (event) {
      delivering_ = true;
      lock.unlock();
      deliver_(*event);
      lock.lock();
      delivering_ = false;
      changed_.notify_all();
    } else if (const auto due = waiting_.NextDue()) {
      changed_.wait_until(lock, *due);
    } else {
      changed_.wait(lock);
    }
  }
}

}  // namespace Kest::Host
