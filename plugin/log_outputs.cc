#include "plugin/log_outputs.h"

#include <limits>
#include <string_view>

#include "log/logger.h"
#include "plugin/host_interface.h"
#include "plugin/plugin_log_target.h"

namespace Kest {
namespace {

constexpr Level kNoLevel = static_cast<Level>(std::numeric_limits<int32_t>::max());

struct Output {
  uint32_t bit;
  std::string_view target;  // its class name
};

constexpr Output kOutputs[] = {{KEST_LOG_STANDARD_ERROR, "StdErrLogTarget"},
                               {KEST_LOG_DEBUGGER, "DebuggerConsoleLogTarget"},
                               {KEST_LOG_HOST, PluginLogTarget::kClassName}};

}  // namespace

void LogOutputs::Set(int32_t leastLevel, uint32_t outputs) {
  MutexLock hold(mutex_);
  leastLevel_ = leastLevel;
  outputs_ = outputs;
  isSet_ = true;
  ApplyLocked();
}

void LogOutputs::Attach(LogTarget& target) {
  MutexLock hold(mutex_);
  Logger::Instance().Attach(target);
  ApplyLocked();
}

void LogOutputs::Detach(LogTarget& target) {
  MutexLock hold(mutex_);
  target.Detach();
}

void LogOutputs::ApplyLocked() const {
  if (!isSet_) return;
  Logger& logger = Logger::Instance();
  const auto least = static_cast<Level>(leastLevel_);
  logger.SetMinimumLevel(least);
  for (const Output& output : kOutputs) {
    LogTarget* const target = logger.FindTarget(output.target);
    if (target != nullptr) target->SetLevel((outputs_ & output.bit) != 0 ? least : kNoLevel);
  }
}

}  // namespace Kest
