// A place that log lines go to: its filter, its line template, its lock.
#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>

#include "base/mutex.h"
#include "log/line_template.h"
#include "log/log_names.h"

namespace Kest {

class LogTarget;

// What the host side may do with a target, as plain functions. Masks given to it come as two
// halves, low half first. Any thread; none of them throws.
struct LogTargetEntries {
  void (*setLevel)(LogTarget* self, int32_t level) noexcept;
  int32_t (*getLevel)(const LogTarget* self) noexcept;
  void (*setMasks)(LogTarget* self, uint32_t includedLow, uint32_t includedHigh,
                   uint32_t excludedLow, uint32_t excludedHigh) noexcept;
  uint64_t (*getIncludedMask)(const LogTarget* self) noexcept;
  uint64_t (*getExcludedMask)(const LogTarget* self) noexcept;
  bool (*getEnabled)(const LogTarget* self) noexcept;  // attached to the logger
  void (*flush)(LogTarget* self) noexcept;
  void (*write)(LogTarget* self, const LogRecord* record) noexcept;
};

// Base of every target. Derive, implement Write with WriteLine, and attach it to the Logger.
// Threads:  any. The target's own lock is held around its sink only, so lines never interleave.
// Lifetime: the logger borrows it; Detach before it is destroyed. `lineTemplate` outlives it.
// A sink that logs does no harm: a line logged from inside a sink is counted and dropped.
class LogTarget {
 public:
  explicit LogTarget(std::string_view lineTemplate = kDefaultLineTemplate);
  virtual ~LogTarget();
  LogTarget(const LogTarget&) = delete;
  LogTarget& operator=(const LogTarget&) = delete;

  // Takes the target off the logger; afterwards no thread writes to it. Not from inside a sink.
  virtual void Detach();
  // "StdErrLogTarget" for class StdErrLogTarget: targets have no other name.
  virtual const char* ClassName() const = 0;
  virtual std::string_view LineTemplate() const;
  virtual void Write(const LogRecord& record) = 0;
  virtual void Flush() = 0;

  // Whether a line of this level and these groups passes the target's filter.
  bool Accepts(Level level, GroupMask groups) const;

  void SetLevel(Level minimum) { level_.store(minimum, std::memory_order_relaxed); }
  Level GetLevel() const { return level_.load(std::memory_order_relaxed); }
  // An excluded group is never included as well: its bit is taken out of `included`.
  void SetMasks(GroupMask included, GroupMask excluded);
  GroupMask IncludedMask() const { return included_.load(std::memory_order_relaxed); }
  GroupMask ExcludedMask() const { return excluded_.load(std::memory_order_relaxed); }
  bool IsAttached() const { return attached_.load(std::memory_order_acquire); }

  // Write and Flush with nothing thrown: a sink that throws loses what it was given.
  void TryWrite(const LogRecord& record) noexcept;
  void TryFlush() noexcept;

  static const LogTargetEntries& Entries();

 protected:
  // Formats `record` with the line template and calls `sink(std::string_view line)` under the
  // target's lock. A NUL follows the line.
  template <typename Sink>
  void WriteLine(const LogRecord& record, Sink&& sink) {
    char buffer[kLineCapacity];
    const std::string_view line = FormatLine(LineTemplate(), record, buffer);
    MutexLock hold(mutex_);
    sink(line);
  }

 private:
  friend class Logger;

  Mutex mutex_;  // dispatch takes it after the logger's lock; Detach before it, see there
  std::string_view lineTemplate_;
  std::atomic<Level> level_ = Level::kWarning;
  std::atomic<GroupMask> included_ = kNoGroups;
  std::atomic<GroupMask> excluded_ = kNoGroups;
  std::atomic<bool> attached_ = false;
  LogTarget* next_ = nullptr;  // the one attached after it; the logger's, under its lock
};

}  // namespace Kest
