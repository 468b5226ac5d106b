// A cooperative scheduler on a virtual clock, on one thread: what may come next under the rules
// of the C interface is a candidate, and the given random numbers choose among the candidates.
//
//   lanes    work of one lane begins in order, and only when the work before it has ended
//   tasks    begin in the order they were posted; each may wait while the next begins
//   events   happen outside of all tasks, in the order they are due
//   waiting  a task that yielded is a candidate again once anything else has happened
//
// Threads: the one that made it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/tasks/fiber.h"
#include "host/world/data/seeded_random.h"

namespace Kest::Host {

class VirtualScheduler {
 public:
  using Work = std::function<void()>;

  VirtualScheduler() = default;
  // REQUIRES: nothing waits.
  ~VirtualScheduler();
  VirtualScheduler(const VirtualScheduler&) = delete;
  VirtualScheduler& operator=(const VirtualScheduler&) = delete;

  // False: a task of that name has not begun yet and serves for this one too.
  bool PostTask(std::string_view name, Work work);
  void PostToLane(const std::string& lane, Work work);
  // In a lane of its own.
  void PostFree(Work work);
  void PostEvent(int64_t delayMilliseconds, Work work);
  // Forgets what has not begun.
  void DropAll();

  // [task] Lets others run.
  void Yield();
  bool OnTask() const { return current_ != nullptr; }
  // Something happened that a waiting task may have waited for.
  void NoteProgress() { ++progress_; }

  // Runs one candidate. False: there was none at this time.
  bool RunOne(SeededRandom& random);
  // Runs, and moves the clock to the next event when there is no candidate, until nothing is left
  // but tasks that wait for ever. False: not within `mostRuns`.
  bool RunUntilQuiet(SeededRandom& random, size_t mostRuns);
  // Moves the clock, running what is due on the way.
  bool Advance(int64_t milliseconds, SeededRandom& random, size_t mostRuns);

  size_t WaitingTasks() const { return started_.size(); }
  int64_t Now() const { return now_; }  // milliseconds since the scheduler was made

 private:
  struct Lane {
    std::deque<Work> waiting;
    bool busy = false;
  };
  struct RunningTask {
    std::unique_ptr<Fiber> fiber;
    uint64_t stalledAt = 0;  // the progress at its last fruitless turn
    bool stalled = false;
    std::string lane;  // that it keeps busy; empty: none
  };
  struct NamedTask {
    std::string name;
    Work work;
  };

  bool RunNth(size_t index);
  size_t CountCandidates() const;
  bool MayResume(const RunningTask& task) const;
  bool EventIsDue() const;
  void RunEvent();
  void Begin(std::string lane, Work work);
  void Resume(RunningTask* task);

  int64_t now_ = 0;
  uint64_t progress_ = 0;
  uint64_t nextLane_ = 0;
  std::deque<NamedTask> tasks_;
  std::map<std::string, Lane> lanes_;
  std::multimap<int64_t, Work> events_;  // equal times keep their order
  std::vector<std::unique_ptr<RunningTask>> started_;
  std::vector<std::unique_ptr<Fiber>> spare_;
  RunningTask* current_ = nullptr;
};

}  // namespace Kest::Host
