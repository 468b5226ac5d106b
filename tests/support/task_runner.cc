#include "tests/support/task_runner.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace Kest::Testing {
namespace {

void FailTest(std::string_view /*task*/, std::string_view message) {
  ADD_FAILURE() << "An exception left a task or a delivery: " << message;
}

}  // namespace

TaskRunner::TaskRunner() : scheduler_(FailTest), serviceThread_(FailTest) {}

void TaskRunner::Post(Work work) {
  Host::Scheduler::Task task{.name = {}, .work = [this, work = std::move(work)] {
                               work();
                               NoteProgress();
                             }};
  const std::lock_guard lock(mutex_);
  if (running_) {
    scheduler_.Post(std::move(task));
  } else {
    waitingForRun_.push_back(std::move(task));
  }
}

void TaskRunner::RunUntilIdle() {
  {
    const std::lock_guard lock(mutex_);
    running_ = true;
    for (auto& task : std::exchange(waitingForRun_, {})) scheduler_.Post(std::move(task));
  }
  const auto idle = std::make_shared<std::promise<void>>();
  scheduler_.Post({.name = {}, .work = [this, idle] {
                     WatchUntilIdle();
                     idle->set_value();
                   }});
  idle->get_future().wait();
  const std::lock_guard lock(mutex_);
  running_ = false;
}

// Returns when the others have yielded a few turns on end and nothing happened.
void TaskRunner::WatchUntilIdle() {
  constexpr int kQuietTurns = 4;  // a task may yield a few times for no reason
  for (int quiet = 0; quiet < kQuietTurns; ++quiet) {
    const uint64_t before = progress_;
    scheduler_.Wake();
    scheduler_.Yield();
    const bool happened = progress_ != before || eventsOnThread_ != 0;
    if (happened || (quiet + 1 == kQuietTurns && ReleaseServiceEvent())) quiet = -1;
  }
}

void TaskRunner::PostServiceEvent(Work deliver) {
  if (!keepOrder_) return Deliver(std::move(deliver));
  const std::lock_guard lock(mutex_);
  orderedEvents_.push_back(std::move(deliver));
}

// Delivers the next event that KeepOrder keeps, while no task runs.
bool TaskRunner::ReleaseServiceEvent() {
  {
    const std::lock_guard lock(mutex_);
    if (orderedEvents_.empty()) return false;
    Deliver(std::move(orderedEvents_.front()));
    orderedEvents_.pop_front();
  }
  while (eventsOnThread_ != 0) std::this_thread::yield();
  return true;
}

void TaskRunner::Deliver(Work deliver) {
  ++eventsOnThread_;
  serviceThread_.Post({.name = {}, .work = [this, deliver = std::move(deliver)] {
                         deliver();
                         NoteProgress();
                         --eventsOnThread_;
                       }});
}

}  // namespace Kest::Testing
