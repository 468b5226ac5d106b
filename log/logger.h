// The process's logger, and the functions that log one line.
//
//   LogWarning("Loot recipe %s has an unreadable quantity: %s", name, text);
//
// Lines are printf-formatted (at most 4095 bytes, the rest is cut; no locale), filtered by level
// and group, and written to every attached target that accepts them. Logging never fails and never
// throws; a filtered call costs a few instructions; no call allocates once the logger exists.
// Formats are literals: a text from outside is always an argument ("%s").
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "log/console_targets.h"
#include "log/log_names.h"
#include "log/log_target.h"
#include "log/printf_attribute.h"

namespace Kest {

void Log(Level level, GroupMask groups, const char* format, ...) KEST_PRINTF(3, 4);
void LogV(Level level, GroupMask groups, const char* format, va_list arguments) KEST_PRINTF(3, 0);

// Lines of no group in particular.
void LogOkay(const char* format, ...) KEST_PRINTF(1, 2);
void LogWarning(const char* format, ...) KEST_PRINTF(1, 2);
void LogError(const char* format, ...) KEST_PRINTF(1, 2);
void LogAlways(const char* format, ...) KEST_PRINTF(1, 2);

// Receives every log call before any filter, unformatted. The group mask comes as two halves, low
// half first. It may log itself: such a line is counted and dropped.
using LogForwardHook = void (*)(void* context, int32_t level, uint32_t groupsLow,
                                uint32_t groupsHigh, const char* format, va_list arguments);

// Filters, counts and hands lines to the targets. One per process, made on first use and never
// destroyed: whatever runs last in the process may still log.
// Threads: any, but not from inside a sink or hook, except for logging and Flush. One lock covers
// the walk over the targets; each target's lock is taken inside it.
class Logger {
 public:
  static Logger& Instance();

  // Hands lines to `target` from now on, after the targets attached before. It is borrowed until
  // its Detach. Attaching it twice does nothing.
  void Attach(LogTarget& target) KEST_EXCLUDES(mutex_);
  // The first attached target of that class name, or null.
  LogTarget* FindTarget(std::string_view className) KEST_EXCLUDES(mutex_);
  // Flushes every attached target. From inside a sink or hook it does nothing.
  void Flush() KEST_EXCLUDES(mutex_);

  // Made at start but not attached.
  StdOutLogTarget& StandardOutput() { return standardOutput_; }

  // Global filter: nothing below `minimum` (default: warning), nothing of an excluded group
  // (default: kGroupExtra), nothing at all while disabled.
  void SetMinimumLevel(Level minimum) KEST_EXCLUDES(mutex_);
  void SetExcludedGroups(GroupMask excluded) KEST_EXCLUDES(mutex_);
  void SetDisabled(bool disabled) KEST_EXCLUDES(mutex_);

  // Null takes the hook out. When this returns, the former hook is in no call and gets none.
  void SetForwardHook(LogForwardHook hook, void* context) KEST_EXCLUDES(mutex_);

  // Lines of level warning and error that passed the global filter.
  uint32_t WarningCount() const { return warnings_.load(std::memory_order_relaxed); }
  uint64_t ErrorCount() const { return errors_.load(std::memory_order_relaxed); }

  // Takes every target off and starts over: defaults, no hook, counters 0, built-in targets
  // attached. REQUIRES: no other thread logs.
  void ResetForTests() KEST_EXCLUDES(mutex_);

 private:
  friend class LogTarget;
  friend void LogV(Level level, GroupMask groups, const char* format, va_list arguments);

  Logger();
  void SetDefaultsLocked() KEST_REQUIRES(mutex_);
  void AttachLocked(LogTarget& target) KEST_REQUIRES(mutex_);
  void UpdateFilterLocked() KEST_REQUIRES(mutex_);
  void Dispatch(Level level, GroupMask groups, const char* format, va_list arguments)
      KEST_EXCLUDES(mutex_) KEST_PRINTF(4, 0);
  void Forward(Level level, GroupMask groups, const char* format, va_list arguments)
      KEST_EXCLUDES(mutex_) KEST_PRINTF(4, 0);
  void WriteToTargets(const LogRecord& record) KEST_EXCLUDES(mutex_);
  void Count(Level level);
  // Takes `target` off the list. False: the lock is busy, try again.
  bool TryRemove(LogTarget& target) KEST_EXCLUDES(mutex_);

  StdErrLogTarget standardError_;
  StdOutLogTarget standardOutput_;
  DebuggerConsoleLogTarget debugger_;
  std::string executable_;
  // Changed under the lock, but for lines logged from inside a sink, whose thread holds it already.
  std::atomic<uint32_t> warnings_ = 0;
  std::atomic<uint64_t> errors_ = 0;

  Mutex mutex_;
  bool disabled_ KEST_GUARDED_BY(mutex_) = false;
  Level minimum_ KEST_GUARDED_BY(mutex_) = Level::kWarning;
  LogForwardHook hook_ KEST_GUARDED_BY(mutex_) = nullptr;
  void* hookContext_ KEST_GUARDED_BY(mutex_) = nullptr;
  std::vector<LogTarget*> targets_ KEST_GUARDED_BY(mutex_);  // in order of attachment
};

}  // namespace Kest
