// Where the log lines of this library go, as its host chooses: to standard error and the debugger
// by themselves, to the host's log, or to fewer of these.
//
// Threads: any, but not from inside a target's sink.
#pragma once

#include <atomic>
#include <cstdint>

namespace Kest {

class LogOutputs {
 public:
  // Lines of at least `leastLevel` go to `outputs`, a sum of KEST_LOG_..., and to no other target
  // of the library. Until then the logger's own defaults hold.
  void Set(int32_t leastLevel, uint32_t outputs);
  // What was set holds for a target that was attached since, too.
  void Apply() const;

 private:
  std::atomic<bool> isSet_ = false;
  std::atomic<int32_t> leastLevel_ = 0;
  std::atomic<uint32_t> outputs_ = 0;
};

}  // namespace Kest
