#include "tests/support/task_pump.h"

#include <cstdio>
#include <cstdlib>

#include "tests/support/baton.h"

namespace Kest::Testing {

// Does one task after the other: threads are dear on some systems, and most tasks are short.
struct TaskPump::Worker {
  std::function<void()> work;  // none: the task has ended
  Baton baton;
  std::thread thread;
};

namespace {
thread_local void* currentWorker = nullptr;  // the TaskPump::Worker this thread belongs to
}  // namespace

TaskPump::TaskPump() : freeThread_([this] { RunFreeThread(); }) {}

TaskPump::~TaskPump() {
  {
    const std::lock_guard hold(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  freeThread_.join();
  if (!yielded_.empty()) {
    std::fprintf(stderr, "%zu module tasks still wait at the end of the test\n", yielded_.size());
    std::abort();
  }
  for (const auto& worker : idle_) {
    worker->baton.Give(/*toTask=*/true);
    worker->thread.join();
  }
}

void TaskPump::Post(std::function<void()> work) {
  const std::lock_guard hold(mutex_);
  fresh_.push_back(std::move(work));
}

void TaskPump::PostOnThread(std::function<void()> work) {
  const std::lock_guard hold(mutex_);
  threadWork_.push_back(std::move(work));
  changed_.notify_all();
}

void TaskPump::RunFreeThread() {
  std::unique_lock hold(mutex_);
  for (;;) {
    changed_.wait(hold, [this] { return ending_ || !threadWork_.empty(); });
    if (threadWork_.empty()) return;
    const std::function<void()>& work = threadWork_.front();
    hold.unlock();
    work();
    hold.lock();
    threadWork_.pop_front();
    ++done_;
    changed_.notify_all();
  }
}

std::unique_ptr<TaskPump::Worker> TaskPump::TakeWorker() {
  if (!idle_.empty()) {
    auto worker = std::move(idle_.back());
    idle_.pop_back();
    return worker;
  }
  auto worker = std::make_unique<Worker>();
  worker->thread = std::thread([self = worker.get()] {
    currentWorker = self;
    for (;;) {
      self->baton.Await(/*byTask=*/true);
      if (!self->work) return;
      self->work();
      self->work = nullptr;
      self->baton.Give(/*toTask=*/false);
    }
  });
  return worker;
}

void TaskPump::RunTurn(std::unique_ptr<Worker> worker) {
  worker->baton.Give(/*toTask=*/true);
  worker->baton.Await(/*byTask=*/false);
  if (worker->work) {
    yielded_.push_back(std::move(worker));
    return;
  }
  idle_.push_back(std::move(worker));
  const std::lock_guard hold(mutex_);
  ++done_;
}

void TaskPump::RunRound() {
  for (size_t turns = yielded_.size(); turns > 0 && !yielded_.empty(); --turns) {
    std::unique_ptr<Worker> worker = std::move(yielded_.front());
    yielded_.pop_front();
    RunTurn(std::move(worker));
  }
  std::unique_lock hold(mutex_);
  while (!fresh_.empty()) {
    std::function<void()> work = std::move(fresh_.front());
    fresh_.pop_front();
    hold.unlock();
    std::unique_ptr<Worker> worker = TakeWorker();
    worker->work = std::move(work);
    RunTurn(std::move(worker));
    hold.lock();
  }
}

void TaskPump::RunUntilIdle() {
  constexpr int kQuietRounds = 4;  // a task may yield a few times for no reason
  uint64_t before = 0;
  for (int quiet = 0; quiet < kQuietRounds; ++quiet) {
    RunRound();
    std::unique_lock hold(mutex_);
    if (done_ == before) changed_.wait(hold, [this] { return threadWork_.empty(); });
    if (done_ != before) quiet = -1;
    before = done_;
  }
}

void TaskPump::Yield() {
  if (currentWorker == nullptr) {
    RunRound();
    return;
  }
  auto* const worker = static_cast<Worker*>(currentWorker);
  worker->baton.Give(/*toTask=*/false);
  worker->baton.Await(/*byTask=*/true);
}

}  // namespace Kest::Testing
