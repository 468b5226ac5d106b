#include "tests/support/task_pump.h"

#include <cstdio>
#include <cstdlib>

namespace Kest::Testing {

// What passes between the pump and one task's thread: whoever holds it runs. (std::binary_semaphore
// loses wake-ups where the C++ library builds it on condition variables.)
class TaskPump::Baton {
 public:
  void Give(bool toTask) {
    {
      const std::lock_guard hold(mutex_);
      isTasks_ = toTask;
    }
    changed_.notify_one();
  }
  void Await(bool byTask) {
    std::unique_lock hold(mutex_);
    changed_.wait(hold, [&] { return isTasks_ == byTask; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isTasks_ = false;
};

struct TaskPump::Task {
  std::function<void()> work;
  std::thread thread;
  Baton baton;
  bool done = false;
};

namespace {
thread_local void* currentTask = nullptr;  // the TaskPump::Task this thread belongs to
}  // namespace

TaskPump::TaskPump() : freeThread_([this] { RunFreeThread(); }) {}

TaskPump::~TaskPump() {
  {
    const std::lock_guard hold(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  freeThread_.join();
  if (yielded_.empty()) return;
  std::fprintf(stderr, "%zu module tasks still wait at the end of the test\n", yielded_.size());
  std::abort();
}

void TaskPump::Post(std::function<void()> work) {
  auto task = std::make_unique<Task>();
  task->work = std::move(work);
  const std::lock_guard hold(mutex_);
  fresh_.push_back(std::move(task));
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

void TaskPump::RunTurn(std::unique_ptr<Task> task) {
  Task* const running = task.get();
  if (!running->thread.joinable()) {
    running->thread = std::thread([running] {
      currentTask = running;
      running->baton.Await(/*byTask=*/true);
      running->work();
      running->work = nullptr;
      running->done = true;
      running->baton.Give(/*toTask=*/false);
    });
  }
  running->baton.Give(/*toTask=*/true);
  running->baton.Await(/*byTask=*/false);
  if (!running->done) {
    yielded_.push_back(std::move(task));
    return;
  }
  running->thread.join();
  const std::lock_guard hold(mutex_);
  ++done_;
}

void TaskPump::RunRound() {
  for (size_t turns = yielded_.size(); turns > 0 && !yielded_.empty(); --turns) {
    std::unique_ptr<Task> task = std::move(yielded_.front());
    yielded_.pop_front();
    RunTurn(std::move(task));
  }
  std::unique_lock hold(mutex_);
  while (!fresh_.empty()) {
    std::unique_ptr<Task> task = std::move(fresh_.front());
    fresh_.pop_front();
    hold.unlock();
    RunTurn(std::move(task));
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
  if (currentTask == nullptr) {
    RunRound();
    return;
  }
  auto* const task = static_cast<Task*>(currentTask);
  task->baton.Give(/*toTask=*/false);
  task->baton.Await(/*byTask=*/true);
}

}  // namespace Kest::Testing
