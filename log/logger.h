// The process's logger, and the functions that log one line.
//
//   LogWarning("Loot recipe %s has an unreadable quantity: %s", name, text);
//
// Lines are printf-formatted (at most 4095 bytes, the rest is cut; no locale), filtered by level
// and group, and written to every attached target that accepts them. Logging never fails, never
// throws and needs no memory; a filtered call costs a few instructions. Formats are literals: a
// text from outside is always an argument ("%s").
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/mutex.h"
#include "log/console_targets.h"
#include "log/log_names.h"
#include "log/log_target.h"
#include "log/printf_attribute.h"
#include "log/printf_format.h"

namespace Kest {

namespace LogFilter {

// What a call is tested against before anything else. It is outside the logger, ready before
// any code runs, so that a call that is dropped costs no more than this test.
extern std::atomic<Level> minimum;
extern std::atomic<GroupMask> excluded;
extern std::atomic<bool> hooked;

inline bool Passes(Level level, GroupMask groups) {
  return level >= minimum.load(std::memory_order_relaxed) &&
         (groups & excluded.load(std::memory_order_relaxed)) == 0;
}
inline bool Wants(Level level, GroupMask groups) {
  return Passes(level, groups) || hooked.load(std::memory_order_relaxed);
}

}  // namespace LogFilter

void Log(Level level, GroupMask groups, const char* format, ...) KEST_PRINTF(3, 4);

// Lines of no group in particular.
void LogOkay(const char* format, ...) KEST_PRINTF(1, 2);
void LogWarning(const char* format, ...) KEST_PRINTF(1, 2);
void LogError(const char* format, ...) KEST_PRINTF(1, 2);
void LogAlways(const char* format, ...) KEST_PRINTF(1, 2);

// Logs without the test.
void LogUnfiltered(Level level, GroupMask groups, const char* format, ...) KEST_PRINTF(3, 4);

#if defined(__GNUC__) && !defined(__clang__)
// GCC can inline the test into the caller of a variadic function; other compilers call it. What is
// handed on here has been checked against its format at that call.
#define KEST_LOG_INLINE
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
[[gnu::always_inline]] inline void Log(Level level, GroupMask groups, const char* format, ...) {
  if (LogFilter::Wants(level, groups)) {
    LogUnfiltered(level, groups, format, __builtin_va_arg_pack());
  }
}
[[gnu::always_inline]] inline void LogOkay(const char* format, ...) {
  Log(Level::kOkay, kNoGroups, format, __builtin_va_arg_pack());
}
[[gnu::always_inline]] inline void LogWarning(const char* format, ...) {
  Log(Level::kWarning, kNoGroups, format, __builtin_va_arg_pack());
}
[[gnu::always_inline]] inline void LogError(const char* format, ...) {
  Log(Level::kError, kNoGroups, format, __builtin_va_arg_pack());
}
[[gnu::always_inline]] inline void LogAlways(const char* format, ...) {
  Log(Level::kAlways, kNoGroups, format, __builtin_va_arg_pack());
}
#pragma GCC diagnostic pop
#endif

// Receives every log call before any filter, unformatted. The group mask comes as two halves, low
// half first. It may log itself: such a line is counted and dropped.
using LogForwardHook = void (*)(void* context, int32_t level, uint32_t groupsLow,
                                uint32_t groupsHigh, const char* format, va_list arguments);

// Gives the time of lines: milliseconds since 1970. Called under the logger's lock; it must not
// log. Without a function it is the system's.
struct LogClock {
  int64_t (*read)(const void* context) = nullptr;
  const void* context = nullptr;
};

// Filters, counts and hands lines to the targets. One per process, made on first use and never
// destroyed: code that runs last in the process may still log.
// Threads: any, but not from inside a sink or hook, except for logging and Flush. One lock covers
// the walk over the targets; each target's lock is taken inside it.
class Logger {
 public:
  static Logger& Instance() noexcept;

  // Hands one call to the hook and, when it passes the filter, to the targets.
  void Dispatch(Level level, GroupMask groups, const char* format, ArgumentList& arguments)
      KEST_EXCLUDES(mutex_) KEST_PRINTF(4, 0);

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

  // Stamps lines by `clock` from now on; "#H" counts from its first line. When this returns, the
  // former clock is in no call and gets none.
  void SetClock(LogClock clock) KEST_EXCLUDES(mutex_);

  // Lines of level warning and error that passed the global filter.
  uint32_t WarningCount() const { return warnings_.load(std::memory_order_relaxed); }
  uint64_t ErrorCount() const { return errors_.load(std::memory_order_relaxed); }

  // Takes every target off and starts over: defaults, no hook, counters 0, built-in targets
  // attached. REQUIRES: no other thread logs.
  void ResetForTests() KEST_EXCLUDES(mutex_);

 private:
  friend class LogTarget;

  Logger() noexcept;
  void SetDefaultsLocked() KEST_REQUIRES(mutex_);
  void AttachLocked(LogTarget& target) KEST_REQUIRES(mutex_);
  // The link that points to `target`, or, when it is not attached, the last one, which is null.
  LogTarget** FindLinkLocked(const LogTarget* target) KEST_REQUIRES(mutex_);
  void UpdateFilterLocked() KEST_REQUIRES(mutex_);
  void Forward(Level level, GroupMask groups, const char* format, ArgumentList& arguments)
      KEST_EXCLUDES(mutex_) KEST_PRINTF(4, 0);
  void WriteToTargets(LogRecord& record) KEST_EXCLUDES(mutex_);
  void StampLocked(LogRecord& record) KEST_REQUIRES(mutex_);
  LocalTime LocalTimeLocked(int64_t now) KEST_REQUIRES(mutex_);
  // Only ever under the lock; the counters are atomic for those who read them.
  void Count(Level level);
  // Takes `target` off the list. False: the lock is busy, try again.
  bool TryRemove(LogTarget& target) KEST_EXCLUDES(mutex_);

  static constexpr int64_t kNoReading = std::numeric_limits<int64_t>::min();

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
  LogClock clock_ KEST_GUARDED_BY(mutex_);
  int64_t firstReading_ KEST_GUARDED_BY(mutex_) = kNoReading;  // of that clock
  // In order of attachment, linked through the targets: attaching one needs no memory.
  LogTarget* targets_ KEST_GUARDED_BY(mutex_) = nullptr;
  // The last local time and the wall clock second it stands for.
  LocalTime localTime_ KEST_GUARDED_BY(mutex_);
  int64_t localSecond_ KEST_GUARDED_BY(mutex_) = kNoReading;
};

}  // namespace Kest
