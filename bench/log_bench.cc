// One log call: filtered, formatted for a sink that drops the message, and formatted as a whole
// line.
#include <benchmark/benchmark.h>
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
  void Write(const LogRecord& record) override { benchmark::DoNotOptimize(record.message.data()); }
  void Flush() override {}
};

// Formats the line and drops it.
class LineTarget : public LogTarget {
 public:
  const char* ClassName() const override { return "LineTarget"; }
  void Write(const LogRecord& record) override {
    WriteLine(record, [](std::string_view line) { benchmark::DoNotOptimize(line.data()); });
  }
  void Flush() override {}
};

class PeerLineSink : public spdlog::sinks::base_sink<std::mutex> {
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    benchmark::DoNotOptimize(line.data());
  }
  void flush_() override {}
};

template <typename Target>
void LogTo(benchmark::State& state) {
  Logger& logger = Logger::Instance();
  logger.ResetForTests();
  for (const char* name : {"StdErrLogTarget", "DebuggerConsoleLogTarget"}) {
    logger.FindTarget(name)->Detach();
  }
  Target target;
  logger.Attach(target);
  uint8_t bits = 0;
  const AllocationScope allocations;
  for (auto _ : state) LogWarning("Loot %s: %hhu/%hhu", kName, ++bits, kGoal);
  ReportAllocations(state, allocations);
  target.Detach();
}

template <typename Sink>
void PeerTo(benchmark::State& state) {
  spdlog::logger logger("bench", std::make_shared<Sink>());
  logger.set_pattern("%Y-%m-%dT%H:%M:%S.%e| %l| %v");
  uint8_t bits = 0;
  const AllocationScope allocations;
  for (auto _ : state) logger.warn("Loot {}: {}/{}", kName, ++bits, kGoal);
  ReportAllocations(state, allocations);
}

void Filtered(benchmark::State& state) {
  uint8_t bits = 0;
  const AllocationScope allocations;
  for (auto _ : state) LogOkay("Loot %s: %hhu/%hhu", kName, ++bits, kGoal);
  ReportAllocations(state, allocations);
}

void PeerFiltered(benchmark::State& state) {
  spdlog::logger logger("bench", std::make_shared<spdlog::sinks::null_sink_mt>());
  uint8_t bits = 0;
  for (auto _ : state) logger.debug("Loot {}: {}/{}", kName, ++bits, kGoal);
}

void Message(benchmark::State& state) {
  LogTo<NullTarget>(state);
}
void PeerMessage(benchmark::State& state) {
  PeerTo<spdlog::sinks::null_sink_mt>(state);
}
void Line(benchmark::State& state) {
  LogTo<LineTarget>(state);
}
void PeerLine(benchmark::State& state) {
  PeerTo<PeerLineSink>(state);
}

BENCHMARK(Filtered);
BENCHMARK(PeerFiltered);
BENCHMARK(Message);
BENCHMARK(PeerMessage);
BENCHMARK(Line);
BENCHMARK(PeerLine);

const bool kPromises =
    LimitTime("filtered call", "Filtered", 2) &&
    CompareWithPeer("message to a null sink, beside spdlog", "Message", "PeerMessage", 1.0) &&
    CompareWithPeer("line to a null sink, beside spdlog", "Line", "PeerLine", 1.0) &&
    LimitCounter("allocations of a message", "Message", "allocations", 0) &&
    LimitCounter("allocations of a line", "Line", "allocations", 0);

}  // namespace
}  // namespace Kest::Bench
