// The turn to run code of a plugin: one thread has it at a time.
#pragma once

#include <thread>

#include "base/mutex.h"
#include "host/tasks/condition.h"

namespace Kest::Host {

// Threads: any. What one thread does with the turn happened before what the next does with it.
class Turn {
 public:
  // Waits for the turn. False: this thread has it already.
  bool Take();
  // REQUIRES: this thread has it.
  void Give();

 private:
  Mutex mutex_;
  Condition given_;
  std::thread::id owner_ KEST_GUARDED_BY(mutex_);
};

// Has the turn for a scope.
class TurnScope {
 public:
  explicit TurnScope(Turn& turn) : turn_(turn), isTaken_(turn.Take()) {}
  ~TurnScope() {
    if (isTaken_) turn_.Give();
  }
  TurnScope(const TurnScope&) = delete;
  TurnScope& operator=(const TurnScope&) = delete;

 private:
  Turn& turn_;
  const bool isTaken_;
};

}  // namespace Kest::Host
