#include "host/simulation/machine/virtual_scheduler.h"

#include <algorithm>
#include <utility>

namespace Kest::Host {

// The fibers of tasks that wait for ever are left: a stack belongs to code that cannot be asked to
// leave it.
VirtualScheduler::~VirtualScheduler() {
  for (auto& task : started_) static_cast<void>(task->fiber.release());
}

bool VirtualScheduler::PostTask(std::string_view name, Work work) {
  const auto isSame = [name](const NamedTask& task) { return task.name == name; };
  if (!name.empty() && std::any_of(tasks_.begin(), tasks_.end(), isSame)) return false;
  tasks_.push_back({std::string(name), std::move(work)});
  return true;
}

void VirtualScheduler::PostToLane(const std::string& lane, Work work) {
  lanes_[lane].waiting.push_back(std::move(work));
}

void VirtualScheduler::PostFree(Work work) {
  PostToLane("free " + std::to_string(nextLane_++), std::move(work));
}

void VirtualScheduler::PostEvent(int64_t delayMilliseconds, Work work) {
  events_.emplace(now_ + delayMilliseconds, std::move(work));
}

void VirtualScheduler::DropAll() {
  tasks_.clear();
  events_.clear();
  for (auto& [name, lane] : lanes_) lane.waiting.clear();
  std::erase_if(lanes_, [](const auto& entry) { return !entry.second.busy; });
}

void VirtualScheduler::Yield() {
  current_->fiber->Suspend();
}

bool VirtualScheduler::EventIsDue() const {
  return !events_.empty() && events_.begin()->first <= now_;
}

bool VirtualScheduler::MayResume(const RunningTask& task) const {
  return !task.stalled || task.stalledAt != progress_;
}

size_t VirtualScheduler::CountCandidates() const {
  size_t count = (tasks_.empty() ? 0 : 1) + (EventIsDue() ? 1 : 0);
  for (const auto& [name, lane] : lanes_) count += !lane.busy && !lane.waiting.empty() ? 1 : 0;
  for (const auto& task : started_) count += MayResume(*task) ? 1 : 0;
  return count;
}

bool VirtualScheduler::RunOne(SeededRandom& random) {
  const size_t count = CountCandidates();
  return count > 0 && RunNth(random.Below(count));
}

bool VirtualScheduler::RunNth(size_t index) {
  if (!tasks_.empty() && index-- == 0) {
    Work work = std::move(tasks_.front().work);
    tasks_.pop_front();
    Begin({}, std::move(work));
    return true;
  }
  if (EventIsDue() && index-- == 0) {
    RunEvent();
    return true;
  }
  for (auto& [name, lane] : lanes_) {
    if (lane.busy || lane.waiting.empty() || index-- != 0) continue;
    Work work = std::move(lane.waiting.front());
    lane.waiting.pop_front();
    lane.busy = true;
    Begin(name, std::move(work));
    return true;
  }
  for (const auto& task : started_) {
    if (!MayResume(*task) || index-- != 0) continue;
    Resume(task.get());
    return true;
  }
  return false;
}

bool VirtualScheduler::RunUntilQuiet(SeededRandom& random, size_t mostRuns) {
  for (size_t runs = 0; runs < mostRuns; ++runs) {
    if (RunOne(random)) continue;
    if (events_.empty()) return true;
    now_ = events_.begin()->first;
  }
  return false;
}

bool VirtualScheduler::Advance(int64_t milliseconds, SeededRandom& random, size_t mostRuns) {
  const int64_t end = now_ + milliseconds;
  for (size_t runs = 0; runs < mostRuns; ++runs) {
    if (!events_.empty() && events_.begin()->first <= end) {
      if (EventIsDue() || !RunOne(random)) {
        now_ = std::max(now_, events_.begin()->first);
        RunOne(random);
      }
    } else if (!RunOne(random)) {
      now_ = end;
      return true;
    }
  }
  return false;
}

void VirtualScheduler::RunEvent() {
  const auto first = events_.begin();
  const Work work = std::move(first->second);
  events_.erase(first);
  ++progress_;
  work();
}

void VirtualScheduler::Begin(std::string lane, Work work) {
  auto task = std::make_unique<RunningTask>();
  if (spare_.empty()) spare_.push_back(std::make_unique<Fiber>());
  task->fiber = std::move(spare_.back());
  spare_.pop_back();
  task->lane = std::move(lane);
  task->fiber->Assign(std::move(work));
  started_.push_back(std::move(task));
  ++progress_;
  Resume(started_.back().get());
}

void VirtualScheduler::Resume(RunningTask* task) {
  const uint64_t before = progress_;
  current_ = task;
  task->fiber->Resume();
  current_ = nullptr;
  if (task->fiber->HasWork()) {
    task->stalled = progress_ == before;
    task->stalledAt = progress_;
    return;
  }
  ++progress_;
  if (!task->lane.empty()) {
    const auto lane = lanes_.find(task->lane);
    lane->second.busy = false;
    if (lane->second.waiting.empty()) lanes_.erase(lane);
  }
  spare_.push_back(std::move(task->fiber));
  std::erase_if(started_, [task](const auto& other) { return other.get() == task; });
}

}  // namespace Kest::Host
