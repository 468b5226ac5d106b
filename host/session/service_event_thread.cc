#include "host/session/service_event_thread.h"

#include <utility>

namespace Kest::Host {

ServiceEventThread::ServiceEventThread(Deliver deliver)
    : deliver_(std::move(deliver)), thread_([this] { Run(); }) {}

ServiceEventThread::~ServiceEventThread() {
  {
    const MutexLock lock(mutex_);
    ending_ = true;
  }
  changed_.NotifyAll();
  thread_.join();
}

void ServiceEventThread::Post(std::chrono::milliseconds delay, Event event) {
  {
    const MutexLock lock(mutex_);
    if (paused_ || ending_) return;
    waiting_.Put(Clock::now() + delay, std::move(event));
  }
  changed_.NotifyAll();
}

void ServiceEventThread::Pause() {
  const MutexLock lock(mutex_);
  paused_ = true;
  waiting_.Clear();
  while (delivering_) changed_.Wait(mutex_);
}

void ServiceEventThread::Resume() {
  const MutexLock lock(mutex_);
  paused_ = false;
}

bool ServiceEventThread::Quiet() const {
  const MutexLock lock(mutex_);
  return waiting_.Empty() && !delivering_;
}

void ServiceEventThread::Run() {
  mutex_.Lock();
  while (!ending_) {
    const auto event = waiting_.Take(Clock::now());
    if (event) {
      delivering_ = true;
      mutex_.Unlock();
      deliver_(*event);
      mutex_.Lock();
      delivering_ = false;
      changed_.NotifyAll();
    } else if (const auto due = waiting_.NextDue()) {
      changed_.WaitUntil(mutex_, *due);
    } else {
      changed_.Wait(mutex_);
    }
  }
  mutex_.Unlock();
}

}  // namespace Kest::Host
