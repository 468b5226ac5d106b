// One log call: filtered, formatted for a sink that drops the message, and formatted as a whole
// line.
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <mutex>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "log/logger.h"

namespace Kest::Bench {
namespace {

const char* const kName = "CHEST_rare_4021";
const uint8_t kGoal = 63;

// Takes the message and drops it.
class NullTarget : public LogTarget {
 public:
  const char* ClassName() const override { return "NullTarget"; }
  void Write(const LogRecord& record) override { Keep(record.message.data()); }
  void Flush() override {}
};

// Formats the line and drops it.
class LineTarget : public LogTarget {
 public:
  const char* ClassName() const override { return "LineTarget"; }
  void Write(const LogRecord& record) override {
    WriteLine(record, [](std::string_view line) { Keep(line.data()); });
  }
  void Flush() override {}
};

class PeerLineSink : public spdlog::sinks::base_sink<std::mutex> {
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    Keep(line.data());
  }
  void flush_() override {}
};

uint8_t bits = 0;

void LogMessage() {
  LogWarning("Loot %s: %hhu/%hhu", kName, ++bits, kGoal);
}

void Detach(const char* name) {
  LogTarget* const target = Logger::Instance().FindTarget(name);
  if (target != nullptr) target->Detach();
}

// Compares a warning to `Target` with one to the peer's `Sink`.
template <typename Target, typename Sink>
void CompareWarnings(Table& table, const std::string& what, double goal) {
  Logger::Instance().ResetForTests();
  for (const char* name : {"StdErrLogTarget", "DebuggerConsoleLogTarget"}) Detach(name);
  Target target;
  Logger::Instance().Attach(target);
  spdlog::logger peer("bench", std::make_shared<Sink>());
  peer.set_pattern("%Y-%m-%dT%H:%M:%S.%e| %l| %v");
  const auto logToPeer = [&] { peer.warn("Loot {}: {}/{}", kName, ++bits, kGoal); };
  table.Compare(what, LogMessage, "spdlog", logToPeer, AtLeast(goal));
  table.Value(what + ": allocations", Allocations(LogMessage), "", 0);
  target.Detach();
}

}  // namespace

void AddRows(Table& table) {
  const auto filtered = [] { LogOkay("Loot %s: %hhu/%hhu", kName, ++bits, kGoal); };
  spdlog::logger peer("bench", std::make_shared<spdlog::sinks::null_sink_mt>());
  const auto filteredByPeer = [&] { peer.debug("Loot {}: {}/{}", kName, ++bits, kGoal); };
  table.Compare("log call that is filtered", filtered, "spdlog", filteredByPeer, AtLeast(1));
  CompareWarnings<NullTarget, spdlog::sinks::null_sink_mt>(table, "log message to a null sink", 1);
  CompareWarnings<LineTarget, PeerLineSink>(table, "log line formatted to a null sink", 2);
}

}  // namespace Kest::Bench
