// TaskPump runs cooperative tasks for the fake host. Each task has a thread to itself and one
// baton goes round, so exactly one task runs at a time and one that yields keeps its stack. Beside
// the tasks there is one free thread, for what a host delivers from outside its scheduler.
//
// Threads: Post and PostOnThread anywhere; Yield on tasks, and on the test's thread, where it runs
//          a round; everything else on the test's thread.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Kest::Testing {

class TaskPump {
 public:
  TaskPump();
  // REQUIRES: every task has ended.
  ~TaskPump();
  TaskPump(const TaskPump&) = delete;
  TaskPump& operator=(const TaskPump&) = delete;

  // Queues a task behind those that have not begun.
  void Post(std::function<void()> work);
  // Queues work for the free thread, which does it in order and at its own pace.
  void PostOnThread(std::function<void()> work);
  // Runs until every task has ended or yields a few rounds on end without anything happening.
  void RunUntilIdle();
  void Yield();

 private:
  struct Worker;

  // Every task that waits gets one turn; then the new ones begin.
  void RunRound();
  std::unique_ptr<Worker> TakeWorker();
  void RunTurn(std::unique_ptr<Worker> worker);
  void RunFreeThread();

  std::deque<std::unique_ptr<Worker>> yielded_;
  std::vector<std::unique_ptr<Worker>> idle_;

  std::mutex mutex_;  // over what follows
  std::condition_variable changed_;
  std::deque<std::function<void()>> fresh_;
  std::deque<std::function<void()>> threadWork_;  // the first one is being done
  uint64_t done_ = 0;                             // tasks that ended and work of the free thread
  bool ending_ = false;
  std::thread freeThread_;
};

}  // namespace Kest::Testing
