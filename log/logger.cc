#include "log/logger.h"

#include <algorithm>
#include <limits>
#include <new>

#include "base/platform.h"

namespace Kest {
namespace {

constexpr size_t kMessageCapacity = 4095;
constexpr auto kRelaxed = std::memory_order_relaxed;

constexpr Level kAboveAllLevels = static_cast<Level>(std::numeric_limits<int32_t>::max());

// Whether this thread is handing a line to the hook or the targets. No destructor: the library may
// be unloaded before the thread ends.
constinit thread_local bool insideDispatch = false;

class DispatchScope {
 public:
  DispatchScope() { insideDispatch = true; }
  ~DispatchScope() { insideDispatch = false; }
  DispatchScope(const DispatchScope&) = delete;
  DispatchScope& operator=(const DispatchScope&) = delete;
};

// The name is for display only, so it need not be known.
std::string ExecutableName() noexcept {
  constexpr char kUnknown[] = "<unknown>";
  try {
    const std::string path = ModulePath();
    return path.empty() ? kUnknown : std::string(FileNameOf(path));
  } catch (const std::bad_alloc&) {
    return kUnknown;
  }
}

}  // namespace

namespace LogFilter {

constinit std::atomic<Level> minimum = Level::kWarning;
constinit std::atomic<GroupMask> excluded = kGroupExtra;
constinit std::atomic<bool> hooked = false;

}  // namespace LogFilter

void LogUnfiltered(Level level, GroupMask groups, const char* format, ...) {
  ArgumentList arguments;
  va_start(arguments.list, format);
  Logger::Instance().Dispatch(level, groups, format, arguments);
  va_end(arguments.list);
}

#if !defined(KEST_LOG_INLINE)
#define KEST_LOG_BODY(level, groups)                             \
  if (!LogFilter::Wants(level, groups)) return;                  \
  ArgumentList arguments;                                        \
  va_start(arguments.list, format);                              \
  Logger::Instance().Dispatch(level, groups, format, arguments); \
  va_end(arguments.list)

void Log(Level level, GroupMask groups, const char* format, ...) {
  KEST_LOG_BODY(level, groups);
}
void LogOkay(const char* format, ...) {
  KEST_LOG_BODY(Level::kOkay, kNoGroups);
}
void LogWarning(const char* format, ...) {
  KEST_LOG_BODY(Level::kWarning, kNoGroups);
}
void LogError(const char* format, ...) {
  KEST_LOG_BODY(Level::kError, kNoGroups);
}
void LogAlways(const char* format, ...) {
  KEST_LOG_BODY(Level::kAlways, kNoGroups);
}

#undef KEST_LOG_BODY
#endif

Logger& Logger::Instance() noexcept {
  alignas(Logger) static unsigned char memory[sizeof(Logger)];
  static Logger* const logger = new (memory) Logger;  // never destroyed
  return *logger;
}

Logger::Logger() noexcept : executable_(ExecutableName()) {
  MutexLock hold(mutex_);
  SetDefaultsLocked();
}

void Logger::SetDefaultsLocked() {
  disabled_ = false;
  minimum_ = Level::kWarning;
  hook_ = nullptr;
  clock_ = {};
  localSecond_ = kNoReading;
  LogFilter::excluded = kGroupExtra;
  UpdateFilterLocked();
  standardError_.SetMasks(kGroupDebug, kGroupGeneral);
  standardOutput_.SetMasks(kGroupGeneral, kGroupDebug);
  debugger_.SetMasks(kGroupDebug, kNoGroups);
  for (LogTarget* target :
       {static_cast<LogTarget*>(&standardError_), static_cast<LogTarget*>(&standardOutput_),
        static_cast<LogTarget*>(&debugger_)}) {
    target->SetLevel(Level::kWarning);
  }
  AttachLocked(standardError_);
  AttachLocked(debugger_);
}

void Logger::AttachLocked(LogTarget& target) {
  if (target.IsAttached()) return;
  *FindLinkLocked(nullptr) = &target;
  target.next_ = nullptr;
  target.attached_ = true;
}

LogTarget** Logger::FindLinkLocked(const LogTarget* target) {
  LogTarget** link = &targets_;
  while (*link != nullptr && *link != target) link = &(*link)->next_;
  return link;
}

void Logger::UpdateFilterLocked() {
  LogFilter::minimum = disabled_ ? kAboveAllLevels : minimum_;
  LogFilter::hooked = hook_ != nullptr;
}

void Logger::Attach(LogTarget& target) {
  MutexLock hold(mutex_);
  AttachLocked(target);
}

bool Logger::TryRemove(LogTarget& target) {
  if (!mutex_.TryLock()) return false;
  LogTarget** const link = FindLinkLocked(&target);
  if (*link != nullptr) *link = target.next_;
  target.attached_ = false;
  mutex_.Unlock();
  return true;
}

LogTarget* Logger::FindTarget(std::string_view className) {
  MutexLock hold(mutex_);
  LogTarget* target = targets_;
  while (target != nullptr && target->ClassName() != className) target = target->next_;
  return target;
}

void Logger::Flush() {
  if (insideDispatch) return;  // this thread holds the lock
  const DispatchScope scope;
  MutexLock hold(mutex_);
  for (LogTarget* target = targets_; target != nullptr; target = target->next_) target->TryFlush();
}

void Logger::SetMinimumLevel(Level minimum) {
  MutexLock hold(mutex_);
  minimum_ = minimum;
  UpdateFilterLocked();
}

void Logger::SetExcludedGroups(GroupMask excluded) {
  MutexLock hold(mutex_);
  LogFilter::excluded = excluded;
}

void Logger::SetDisabled(bool disabled) {
  MutexLock hold(mutex_);
  disabled_ = disabled;
  UpdateFilterLocked();
}

void Logger::SetForwardHook(LogForwardHook hook, void* context) {
  MutexLock hold(mutex_);
  hook_ = hook;
  hookContext_ = context;
  UpdateFilterLocked();
}

void Logger::ResetForTests() {
  MutexLock hold(mutex_);
  for (LogTarget* target = targets_; target != nullptr; target = target->next_) {
    target->attached_ = false;
  }
  targets_ = nullptr;
  warnings_ = 0;
  errors_ = 0;
  SetDefaultsLocked();
}

void Logger::Dispatch(Level level, GroupMask groups, const char* format, ArgumentList& arguments) {
  if (insideDispatch) {
    if (LogFilter::Passes(level, groups)) Count(level);  // this thread holds the lock
    return;
  }
  const DispatchScope scope;
  if (LogFilter::hooked.load(kRelaxed)) Forward(level, groups, format, arguments);
  if (!LogFilter::Passes(level, groups)) return;
  char buffer[kMessageCapacity];
  FixedBuffer message(buffer, sizeof(buffer));
  AppendPrintf(message, format, arguments);
  LogRecord record = {
      .level = level, .groups = groups, .message = message.View(), .executable = executable_};
  WriteToTargets(record);
}

void Logger::Forward(Level level, GroupMask groups, const char* format, ArgumentList& arguments) {
  MutexLock hold(mutex_);
  if (hook_ == nullptr) return;
  va_list copy;
  va_copy(copy, arguments.list);
  hook_(hookContext_, static_cast<int32_t>(level), static_cast<uint32_t>(groups),
        static_cast<uint32_t>(groups >> 32), format, copy);
  va_end(copy);
}

void Logger::SetClock(LogClock clock) {
  MutexLock hold(mutex_);
  clock_ = clock;
  firstReading_ = kNoReading;
}

void Logger::StampLocked(LogRecord& record) {
  if (clock_.read == nullptr) {
    record.time = LocalTimeLocked(WallClockMilliseconds());
    return;
  }
  const int64_t now = clock_.read(clock_.context);
  if (firstReading_ == kNoReading) firstReading_ = now;
  record.time = LocalTimeLocked(now);
  record.elapsed = std::max<int64_t>(0, now - firstReading_);
}

// Breaking a reading down into a date costs more than a whole line, and most lines share a second.
LocalTime Logger::LocalTimeLocked(int64_t now) {
  now = std::max<int64_t>(0, now);
  if (now / 1000 != localSecond_) {
    localTime_ = LocalTimeAt(now);
    localSecond_ = now / 1000;
  }
  LocalTime time = localTime_;
  time.millisecond = static_cast<int32_t>(now % 1000);
  return time;
}

void Logger::WriteToTargets(LogRecord& record) {
  MutexLock hold(mutex_);
  StampLocked(record);
  Count(record.level);
  for (LogTarget* target = targets_; target != nullptr; target = target->next_) {
    if (target->Accepts(record.level, record.groups)) target->TryWrite(record);
  }
}

void Logger::Count(Level level) {
  if (level == Level::kWarning) warnings_.store(warnings_.load(kRelaxed) + 1, kRelaxed);
  if (level == Level::kError) errors_.store(errors_.load(kRelaxed) + 1, kRelaxed);
}

}  // namespace Kest
