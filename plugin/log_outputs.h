// Where the log lines of this library go, as its host chooses: to standard error and the debugger
// by themselves, to the host's log, or to fewer of these.
//
// Threads: any, but not from inside a target's sink.
#pragma once

#include <cstdint>

#include "base/mutex.h"
#include "log/log_target.h"

namespace Kest {

class LogOutputs {
 public:
  // Lines of at least `leastLevel` go to `outputs`, a sum of KEST_LOG_..., and to no other target
  // of the library. Until then the logger's own defaults hold.
  void Set(int32_t leastLevel, uint32_t outputs) KEST_EXCLUDES(mutex_);
  // Adds a target to the logger, for which what was set holds, too.
  void Attach(LogTarget& target) KEST_EXCLUDES(mutex_);
  // Takes it out again. It may be destroyed then: no call of Set is using it.
  void Detach(LogTarget& target) KEST_EXCLUDES(mutex_);

 private:
  void ApplyLocked() const KEST_REQUIRES(mutex_);

  Mutex mutex_;
  bool isSet_ KEST_GUARDED_BY(mutex_) = false;
  int32_t leastLevel_ KEST_GUARDED_BY(mutex_) = 0;
  uint32_t outputs_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest
