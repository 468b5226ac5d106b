#include "plugin/runtime_counters.h"

#include "log/logger.h"

namespace Kest {

namespace {

void WriteWords(uint64_t value, uint32_t (&words)[2]) {
  words[0] = static_cast<uint32_t>(value);
  words[1] = static_cast<uint32_t>(value >> 32);
}

}  // namespace

void RuntimeCounters::MarkStart() {
  warningsAtStart = Logger::Instance().WarningCount();
  errorsAtStart = Logger::Instance().ErrorCount();
}

void WriteStatistics(const RuntimeCounters& counters, KestStatistics* statistics) {
  const Logger& logger = Logger::Instance();
  WriteWords(counters.requestsHandled, statistics->requestsHandled);
  WriteWords(counters.requestsFailed, statistics->requestsFailed);
  WriteWords(counters.eventsReceived, statistics->eventsReceived);
  WriteWords(counters.eventsPublished, statistics->eventsPublished);
  // The difference is right even when the logger's 32-bit counter has wrapped.
  const uint32_t warnings = logger.WarningCount() - counters.warningsAtStart.load();
  WriteWords(warnings, statistics->warningsLogged);
  WriteWords(logger.ErrorCount() - counters.errorsAtStart, statistics->errorsLogged);
  WriteWords(0, statistics->zero);
}

}  // namespace Kest
