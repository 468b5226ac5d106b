#include "host/tasks/scheduler.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace Kest::Host {
namespace {

constexpr auto kPollPace = std::chrono::milliseconds(1);
constexpr auto kFarewell = std::chrono::seconds(5);
constexpr size_t kSpareFibers = 32;
// A task that goes on may have been what one waits for that was taken up before it.
constexpr size_t kSettledAfter = 2;

thread_local const Scheduler* runningScheduler = nullptr;

}  // namespace

struct Scheduler::RunningTask {
  Task task;
  std::string waitLabel;
  std::unique_ptr<Fiber> fiber;
};

Scheduler::Scheduler(FailureHandler onFailure, const HostClock& clock)
    : onFailure_(std::move(onFailure)), clock_(clock), thread_([this] { Run(); }) {}

Scheduler::~Scheduler() {
  End();
}

bool Scheduler::End() {
  Close();
  {
    const MutexLock lock(mutex_);
    giveUp_ = Clock::now() + kFarewell;
  }
  changed_.NotifyAll();
  if (thread_.joinable()) thread_.join();
  return !abandoned_;
}

void Scheduler::SetOutsideEvents(std::function<bool()> bringOne) {
  const MutexLock lock(mutex_);
  bringOutsideEvent_ = std::move(bringOne);
}

void Scheduler::SetIdleWork(std::string name, std::function<bool()> isDue, Work work) {
  auto idleWork = std::make_shared<const IdleWork>(
      IdleWork{std::move(name), std::move(isDue), std::move(work)});
  const MutexLock lock(mutex_);
  idleWork_ = std::move(idleWork);
}

Scheduler::Posted Scheduler::Post(Task task) {
  {
    const MutexLock lock(mutex_);
    if (closed_) return Posted::kRefused;
    const auto replaces = [&](const Task& other) {
      return other.merge && other.owner == task.owner && other.name == task.name;
    };
    if (task.merge && std::any_of(queued_.begin(), queued_.end(), replaces)) {
      return Posted::kMerged;
    }
    (task.isOutside && clock_.IsFrozen() ? outside_ : queued_).push_back(std::move(task));
  }
  changed_.NotifyAll();
  return Posted::kQueued;
}

bool Scheduler::PostAfter(std::chrono::milliseconds delay, Task task) {
  {
    const MutexLock lock(mutex_);
    if (closed_) return false;
    delayed_.Put(clock_.Elapsed() + delay, std::move(task));
  }
  changed_.NotifyAll();
  return true;
}

void Scheduler::Wake() {
  {
    const MutexLock lock(mutex_);
    wake_ = true;
  }
  changed_.NotifyAll();
}

void Scheduler::Drop(const void* owner) {
  const auto isOwned = [owner](const Task& task) { return task.owner == owner; };
  const MutexLock lock(mutex_);
  std::erase_if(queued_, isOwned);
  delayed_.DropIf(isOwned);
}

void Scheduler::Close() {
  {
    const MutexLock lock(mutex_);
    closed_ = true;
    delayed_.Clear();
  }
  changed_.NotifyAll();
}

bool Scheduler::OnTask() const {
  return runningScheduler == this && current_ != nullptr;
}

void Scheduler::Yield() {
  current_->fiber->Suspend();
}

void Scheduler::WaitBegin(std::string_view label) {
  current_->waitLabel = label;
  waitHasChanged_ = true;
}

void Scheduler::WaitEnd() {
  current_->waitLabel.clear();
  waitHasChanged_ = true;
}

bool Scheduler::WatchUntil(std::chrono::milliseconds limit, const std::function<bool()>& holds) {
  const Clock::time_point end = Clock::now() + limit;
  ++watchers_;
  bool held = false;
  while (!(held = holds()) && Clock::now() < end && !Closed()) Yield();
  --watchers_;
  return held;
}

bool Scheduler::WatchUntilSettled(std::chrono::milliseconds limit,
                                  const std::function<bool()>& holds) {
  idleRounds_ = 0;
  bool held = false;
  WatchUntil(limit, [&] {
    held = holds();
    return held || (clock_.IsFrozen() && idleRounds_ >= kSettledAfter);
  });
  return held;
}

bool Scheduler::WaitUntilQuiet(std::chrono::milliseconds limit,
                               const std::function<bool()>& alsoQuiet,
                               const std::function<bool()>& waitsForTime) {
  idleRounds_ = 0;
  bool quiet = false;
  WatchUntil(limit, [&] {
    // What feeds the queue from outside is asked first: once it is quiet it queues nothing more.
    quiet = alsoQuiet() && OthersQuiet() && !IsIdleWorkDue();
    return quiet || (clock_.IsFrozen() && idleRounds_ >= kSettledAfter && waitsForTime());
  });
  return quiet;
}

bool Scheduler::WaitUntilSettled(std::chrono::milliseconds limit) {
  const Clock::time_point end = Clock::now() + limit;
  ++settlers_;
  idleRounds_ = 0;
  do {
    Yield();
  } while (idleRounds_ < kSettledAfter && Clock::now() < end && !Closed());
  --settlers_;
  return idleRounds_ >= kSettledAfter;
}

std::optional<HostTime> Scheduler::NextDue() const {
  const MutexLock lock(mutex_);
  return delayed_.NextDue();
}

bool Scheduler::Closed() const {
  const MutexLock lock(mutex_);
  return closed_;
}

bool Scheduler::OthersQuiet() const {
  const MutexLock lock(mutex_);
  return queued_.empty() && outside_.empty() && delayed_.Empty() && started_.size() == watchers_;
}

Scheduler::Report Scheduler::Describe() const {
  Report report;
  {
    const MutexLock lock(mutex_);
    report.queued = queued_.size() + outside_.size();
    report.delayed = delayed_.Size();
  }
  for (const auto& running : started_) {
    report.running.push_back({running->task.name, running->waitLabel});
  }
  return report;
}

void Scheduler::Run() {
  runningScheduler = this;
  while (!Finished()) {
    if (MaySleep() && !StartIdleWork()) Sleep(!started_.empty());
    bool progress = StartDueTasks() > 0;
    progress |= TakeWake();
    progress |= ResumeYielded() > 0;
    progress |= std::exchange(waitHasChanged_, false);
    idleRounds_ = progress ? 0 : idleRounds_ + 1;
  }
  abandoned_ = !started_.empty();
  for (auto& running : started_) static_cast<void>(running.release());
}

// Settled tasks sleep, unless there is something else to begin with.
bool Scheduler::MaySleep() {
  if (!clock_.IsFrozen()) return idleRounds_ > 0;
  if (idleRounds_ < kSettledAfter || !LetOutsideIn()) {
    return idleRounds_ >= kSettledAfter && settlers_ == 0;
  }
  idleRounds_ = 0;
  return false;
}

bool Scheduler::LetOutsideIn() {
  std::function<bool()> bringEvent;
  {
    const MutexLock lock(mutex_);
    bringEvent = bringOutsideEvent_;
  }
  if (bringEvent && bringEvent()) return true;
  if (settlers_ > 0) return false;
  const MutexLock lock(mutex_);
  if (outside_.empty()) return false;
  queued_.push_back(std::move(outside_.front()));
  outside_.pop_front();
  return true;
}

bool Scheduler::IsIdleWorkDue() const {
  std::shared_ptr<const IdleWork> idleWork;
  {
    const MutexLock lock(mutex_);
    idleWork = idleWork_;
  }
  return idleWork && idleWork->isDue();
}

// It begins at once: no task that is queued meanwhile comes between.
bool Scheduler::StartIdleWork() {
  if (!IsIdleWorkDue() || !OthersQuiet()) return false;
  std::shared_ptr<const IdleWork> idleWork;
  {
    const MutexLock lock(mutex_);
    if (closed_) return false;
    idleWork = idleWork_;
  }
  Start({.name = idleWork->name, .work = idleWork->work, .cause = 0});
  return true;
}

bool Scheduler::Finished() {
  const MutexLock lock(mutex_);
  if (!closed_ || giveUp_ == Clock::time_point::max()) return false;
  return (queued_.empty() && outside_.empty() && started_.empty()) || Clock::now() >= giveUp_;
}

// Waits until there may be something to do; with yielded tasks not longer than their pace.
void Scheduler::Sleep(bool hasYielded) {
  const MutexLock lock(mutex_);
  const bool ending = giveUp_ != Clock::time_point::max();
  if (!queued_.empty() || wake_ || (ending && !hasYielded)) return;
  if (!outside_.empty() && settlers_ == 0) return;
  std::optional<Clock::time_point> nextDue;
  if (const auto due = delayed_.NextDue()) nextDue = clock_.SystemTimeOf(*due);
  if (hasYielded) {
    changed_.WaitUntil(mutex_, std::min(Clock::now() + kPollPace, nextDue.value_or(giveUp_)));
  } else if (nextDue) {
    changed_.WaitUntil(mutex_, *nextDue);
  } else {
    changed_.Wait(mutex_);
  }
}

void Scheduler::MoveDelayedLocked() {
  while (auto task = delayed_.Take(clock_.Elapsed())) queued_.push_back(std::move(*task));
  if (clock_.IsFrozen() && !closed_) return;
  for (Task& task : outside_) queued_.push_back(std::move(task));
  outside_.clear();
}

bool Scheduler::TakeWake() {
  const MutexLock lock(mutex_);
  return std::exchange(wake_, false);
}

bool Scheduler::TakeNext(Task* task) {
  const MutexLock lock(mutex_);
  if (queued_.empty()) return false;
  *task = std::move(queued_.front());
  queued_.pop_front();
  return true;
}

// Starts what is queued now; what these tasks queue waits for the next round, after the yielded.
size_t Scheduler::StartDueTasks() {
  size_t count = 0;
  {
    const MutexLock lock(mutex_);
    MoveDelayedLocked();
    count = queued_.size();
  }
  Task task;
  size_t begun = 0;
  for (; begun < count && TakeNext(&task); ++begun) Start(std::move(task));
  return begun;
}

void Scheduler::Start(Task task) {
  const std::string name = task.name;
  try {
    auto running = std::make_unique<RunningTask>();
    if (spare_.empty()) spare_.push_back(std::make_unique<Fiber>());
    running->fiber = std::move(spare_.back());
    spare_.pop_back();
    running->task = std::move(task);
    running->fiber->Assign([this, raw = running.get()] { RunGuarded(raw->task); });
    started_.push_back(std::move(running));
  } catch (const std::bad_alloc&) {
    onFailure_(name, "Out of memory");
    return;
  }
  Continue(started_.back().get());
}

// Returns how many of the yielded tasks ended.
size_t Scheduler::ResumeYielded() {
  std::vector<RunningTask*> yielded;
  for (const auto& running : started_) yielded.push_back(running.get());
  const size_t before = started_.size();
  for (RunningTask* running : yielded) Continue(running);
  return before - started_.size();
}

void Scheduler::Continue(RunningTask* running) {
  current_ = running;
  {
    const CauseScope scope(running->task.cause);
    running->fiber->Resume();
    running->task.cause = CurrentCause();
  }
  current_ = nullptr;
  if (running->fiber->HasWork()) return;
  const auto place = std::find_if(
      started_.begin(), started_.end(),
      [running](const std::unique_ptr<RunningTask>& other) { return other.get() == running; });
  if (spare_.size() < kSpareFibers) spare_.push_back(std::move(running->fiber));
  started_.erase(place);
}

void Scheduler::RunGuarded(const Task& task) const {
  try {
    task.work();
  } catch (const std::exception& failure) {
    onFailure_(task.name, failure.what());
  } catch (...) {
    onFailure_(task.name, "Unknown exception");
  }
}

}  // namespace Kest::Host
