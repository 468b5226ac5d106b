#include "host/session/service_event_thread.h"

#include <utility>

namespace Kest::Host {

ServiceEventThread::ServiceEventThread(Deliver deliver, const HostClock& clock,
                                       std::function<void()> delivered)
    : deliver_(std::move(deliver)),
      clock_(clock),
      delivered_(std::move(delivered)),
      thread_([this] { Run(); }) {}

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
    waiting_.Put(clock_.Elapsed() + delay, std::move(event));
  }
  changed_.NotifyAll();
}

void ServiceEventThread::NoteClock() {
  {
    const MutexLock lock(mutex_);  // the thread has not read the old time and begun to wait since
  }
  changed_.NotifyAll();
}

bool ServiceEventThread::DeliverOne() {
  const MutexLock lock(mutex_);
  if (!clock_.IsFrozen() || !IsDueLocked()) return false;
  mayDeliver_ = true;
  changed_.NotifyAll();
  while (mayDeliver_) changed_.Wait(mutex_);
  return true;
}

std::optional<HostTime> ServiceEventThread::NextDue() const {
  const MutexLock lock(mutex_);
  return waiting_.NextDue();
}

bool ServiceEventThread::IsDueLocked() const {
  const auto due = waiting_.NextDue();
  return due && *due <= clock_.Elapsed();
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
    if (!IsDueLocked() || (clock_.IsFrozen() && !mayDeliver_)) {
      WaitLocked();
      continue;
    }
    const auto event = waiting_.Take(clock_.Elapsed());
    delivering_ = true;
    mutex_.Unlock();
    deliver_(*event);
    mutex_.Lock();
    delivering_ = false;
    mayDeliver_ = false;
    changed_.NotifyAll();
    if (!delivered_ || clock_.IsFrozen()) continue;
    mutex_.Unlock();
    delivered_();
    mutex_.Lock();
  }
  mutex_.Unlock();
}

// Until the next event is due, when time passes by itself, or something changes.
void ServiceEventThread::WaitLocked() {
  std::optional<HostClock::SystemTime> due;
  if (const auto next = waiting_.NextDue()) due = clock_.SystemTimeOf(*next);
  if (due) {
    changed_.WaitUntil(mutex_, *due);
  } else {
    changed_.Wait(mutex_);
  }
}

}  // namespace Kest::Host
