// The cooperative scheduler of module tasks. One task runs at a time, on the scheduler's own
// thread, until it ends or yields; a task that waits leaves its fiber and lets the others run.
//
// Threads:  tagged at each function. [task] means: from inside a task of this scheduler.
// Waiting:  a yielded task is taken up again after any other task ran, after Wake, and otherwise
//           once a millisecond, so a host full of waiting tasks leaves the processor alone.
// Time:     delays pass on the host's clock, limits on the system's.
// Order:    while the host's clock is frozen everything happens in one order. What comes from
//           outside, a request or a service event, begins when the tasks have settled: none of them
//           can go on without it. So the same requests, one after the other, have the same effects.
// Failure:  a task that lets an exception out ends; the failure handler learns its name and text.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/mutex.h"
#include "host/cause/cause.h"
#include "host/clock/host_clock.h"
#include "host/tasks/condition.h"
#include "host/tasks/due_queue.h"
#include "host/tasks/fiber.h"

namespace Kest::Host {

class Scheduler {
 public:
  using Work = std::function<void()>;
  using FailureHandler = std::function<void(std::string_view task, std::string_view text)>;
  using Clock = std::chrono::steady_clock;

  enum class Posted { kRefused, kQueued, kMerged };

  struct Task {
    std::string name;
    Work work;
    const void* owner = nullptr;  // Drop(owner) takes its tasks back
    bool merge = false;           // one waiting task of this owner and name serves for all
    uint64_t cause = CurrentCause();
    bool isOutside = false;  // its time of arrival is chance
  };
  struct TaskReport {
    std::string name;
    std::string waitLabel;  // empty: it does not wait
  };
  struct Report {
    size_t queued = 0;
    size_t delayed = 0;
    std::vector<TaskReport> running;
  };

  // `clock` outlives the scheduler.
  explicit Scheduler(FailureHandler onFailure, const HostClock& clock = HostClock::Real());
  // Ends.
  ~Scheduler();
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;

  // `bringOne` brings in one event from outside that is due, and returns when it has been handled;
  // false: there is none. It is called while the clock is frozen and the tasks have settled, on
  // the scheduler's thread and no task.
  void SetOutsideEvents(std::function<bool()> bringOne);

  // Runs `work` as a task each time `isDue` holds and nothing else is left to do: no other task
  // runs, is queued or delayed, but those that wait in WatchUntil. Tasks that wait until quiet wait
  // for it. `isDue` is called on the scheduler's thread and on no task; what makes it hold, and is
  // no task, calls Wake. Set it before the first task.
  void SetIdleWork(std::string name, std::function<bool()> isDue, Work work);

  // [any thread] Queues a task after those already queued.
  Posted Post(Task task);
  // [any thread] The same, due after `delay`; never merged. False: refused.
  bool PostAfter(std::chrono::milliseconds delay, Task task);
  // [any thread] Takes up the yielded tasks soon: something they may wait for has happened.
  void Wake();
  // [any thread] Forgets the tasks of `owner` that have not begun. What they capture is destroyed
  // under the scheduler's lock and must not call back.
  void Drop(const void* owner);
  // [any thread] Refuses tasks from now on, forgets the delayed ones; the queued ones still run.
  void Close();
  // [the owner's thread] Closes, and gives the tasks that run up to five seconds to end. False:
  // some still wait. They are abandoned with their fibers: a stack belongs to code that cannot be
  // asked to leave it. What they use must not be taken from under them. A second call returns the
  // same.
  bool End();

  // [any thread] Whether the caller is a task of this scheduler.
  bool OnTask() const;

  // [task] Lets the others run; returns when it is this task's turn again.
  void Yield();
  // [task] What this task waits for, for display only.
  void WaitBegin(std::string_view label);
  void WaitEnd();
  // [task] Waits until `holds()`. False: `limit` passed or the scheduler was closed first. Tasks
  // that wait here keep none busy that wait until quiet.
  bool WatchUntil(std::chrono::milliseconds limit, const std::function<bool()>& holds);
  // [task] The same, but not for what only time can bring while the clock is frozen.
  bool WatchUntilSettled(std::chrono::milliseconds limit, const std::function<bool()>& holds);
  // [task] Waits until every other task has ended, none is queued and `alsoQuiet()` holds. False:
  // `limit` passed or the scheduler was closed first, or the tasks have settled and what is left
  // waits for a frozen clock: `waitsForTime()` says so.
  bool WaitUntilQuiet(
      std::chrono::milliseconds limit, const std::function<bool()>& alsoQuiet,
      const std::function<bool()>& waitsForTime = [] { return false; });
  // [task] With a frozen clock: waits until no task, request or event can go on before
  // time passes. Tasks from outside begin after it. False: `limit` passed or the scheduler was
  // closed first.
  bool WaitUntilSettled(std::chrono::milliseconds limit);
  // [any thread] When the next delayed task is due, or nothing when there is none.
  std::optional<HostTime> NextDue() const;
  // [task] What is queued and running. The caller is part of it.
  Report Describe() const;

 private:
  struct RunningTask;  // a fiber and the task on it

  void Run();
  size_t StartDueTasks();
  void Start(Task task);
  size_t ResumeYielded();
  void Continue(RunningTask* running);
  void RunGuarded(const Task& task) const;
  bool MaySleep();
  bool LetOutsideIn();
  bool StartIdleWork();
  void Sleep(bool hasYielded);
  bool TakeNext(Task* task);
  void MoveDelayedLocked() KEST_REQUIRES(mutex_);
  bool TakeWake();
  bool Finished();
  bool Closed() const;
  bool IsIdleWorkDue() const;
  bool OthersQuiet() const;

  struct IdleWork {
    std::string name;
    std::function<bool()> isDue;
    Work work;
  };

  const FailureHandler onFailure_;
  const HostClock& clock_;

  mutable Mutex mutex_;  // before the clock's; no task and no handler runs under it
  Condition changed_;
  std::deque<Task> queued_ KEST_GUARDED_BY(mutex_);
  std::deque<Task> outside_ KEST_GUARDED_BY(mutex_);  // have come while the clock was frozen
  DueQueue<Task> delayed_ KEST_GUARDED_BY(mutex_);
  std::function<bool()> bringOutsideEvent_ KEST_GUARDED_BY(mutex_);
  std::shared_ptr<const IdleWork> idleWork_ KEST_GUARDED_BY(mutex_);  // null: none
  bool wake_ KEST_GUARDED_BY(mutex_) = false;
  bool closed_ KEST_GUARDED_BY(mutex_) = false;
  Clock::time_point giveUp_ KEST_GUARDED_BY(mutex_) = Clock::time_point::max();

  // Touched on the scheduler's thread only.
  std::vector<std::unique_ptr<RunningTask>> started_;  // in order of their start
  std::vector<std::unique_ptr<Fiber>> spare_;
  RunningTask* current_ = nullptr;
  size_t watchers_ = 0;          // tasks inside WatchUntil
  size_t settlers_ = 0;          // tasks inside WaitUntilSettled
  size_t idleRounds_ = 0;        // how often in a row all tasks have been taken up in vain
  bool waitHasChanged_ = false;  // a task began or ended a wait in this round
  bool abandoned_ = false;

  std::thread thread_;
};

}  // namespace Kest::Host
