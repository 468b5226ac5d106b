// TaskRunner drives the development host's scheduler for a test: nothing runs until the test runs
// it, and a run ends when nothing can go on without the test. Service events are delivered on a
// thread of their own.
//
// Threads: Post, PostServiceEvent and NoteProgress on any; Yield and OnTask on tasks; everything
// else
//          on the test's thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

#include "host/tasks/scheduler.h"

namespace Kest::Testing {

class TaskRunner {
 public:
  using Work = std::function<void()>;

  TaskRunner();
  TaskRunner(const TaskRunner&) = delete;
  TaskRunner& operator=(const TaskRunner&) = delete;

  void Post(Work work);
  void PostServiceEvent(Work deliver);
  // From now on a service event is delivered while no task runs, so that every run has one order.
  void KeepOrder() { keepOrder_ = true; }
  // Something happened: a run goes on for some turns more.
  void NoteProgress() { ++progress_; }

  void RunUntilIdle();
  // False: tasks still wait.
  bool End() { return scheduler_.End(); }

  void Yield() { scheduler_.Yield(); }
  bool OnTask() const { return scheduler_.OnTask(); }

 private:
  void WatchUntilIdle();
  bool ReleaseServiceEvent();
  void Deliver(Work deliver);

  bool keepOrder_ = false;
  std::atomic<uint64_t> progress_ = 0;
  std::atomic<uint64_t> eventsOnThread_ = 0;  // not delivered yet
  std::mutex mutex_;
  bool running_ = false;  // the test waits in RunUntilIdle; guarded by mutex_, as are the next two
  std::vector<Host::Scheduler::Task> waitingForRun_;
  std::deque<Work> orderedEvents_;
  // Last: their threads use all the above.
  Host::Scheduler scheduler_;
  Host::Scheduler serviceThread_;
};

}  // namespace Kest::Testing
