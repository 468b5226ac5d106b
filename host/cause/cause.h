// What the code that runs now follows from: the number of a row of the host's timeline, 0 for
// nothing. It belongs to the running task: the scheduler puts it aside while others run, and a task
// that is posted inherits it.
//
// Threads: each has its own.
#pragma once

#include <cstdint>
#include <utility>

namespace Kest::Host {

inline thread_local uint64_t currentCause = 0;

inline uint64_t CurrentCause() {
  return currentCause;
}

// For the rest of what runs now.
inline void SetCurrentCause(uint64_t cause) {
  currentCause = cause;
}

// Makes something else the cause for a scope.
class CauseScope {
 public:
  explicit CauseScope(uint64_t cause) : former_(std::exchange(currentCause, cause)) {}
  ~CauseScope() { currentCause = former_; }
  CauseScope(const CauseScope&) = delete;
  CauseScope& operator=(const CauseScope&) = delete;

 private:
  const uint64_t former_;
};

}  // namespace Kest::Host
