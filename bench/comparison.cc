#include "bench/comparison.h"

#include <cstdio>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Kest::Bench {
namespace {

struct Promise {
  std::string what;
  std::string ours;
  std::string peer;     // empty: a limit
  std::string counter;  // empty: the time
  double aim;
};

struct Result {
  double nanoseconds = 0;
  std::map<std::string, double> counters;
};

// Both are filled by initialisers of constants, so they are made on first use.
std::vector<Promise>& Promises() {
  static std::vector<Promise> promises;
  return promises;
}

std::map<std::string, Result>& Results() {
  static std::map<std::string, Result> results;
  return results;
}

// Nothing for a benchmark that a filter left out.
std::optional<double> Measured(const std::string& name, const std::string& counter) {
  const auto found = Results().find(name);
  if (found == Results().end()) return std::nullopt;
  if (counter.empty()) return found->second.nanoseconds;
  const auto value = found->second.counters.find(counter);
  return value != found->second.counters.end() ? std::optional(value->second) : std::nullopt;
}

void Print(const Promise& promise) {
  const auto ours = Measured(promise.ours, promise.counter);
  if (!ours) return;
  const char* const what = promise.what.c_str();
  if (promise.peer.empty()) {
    const char* const unit = promise.counter.empty() ? " ns" : "";
    std::printf("%-52s %10.2f%s  at most %.2f: %s\n", what, *ours, unit, promise.aim,
                *ours <= promise.aim ? "met" : "MISSED");
  } else if (const auto peer = Measured(promise.peer, "")) {
    const double ratio = *peer / *ours;
    std::printf("%-52s %9.2fx  at least %.2fx: %s\n", what, ratio, promise.aim,
                ratio >= promise.aim ? "met" : "MISSED");
  }
}

}  // namespace

bool CompareWithPeer(std::string what, std::string ours, std::string peer, double aim) {
  Promises().push_back({std::move(what), std::move(ours), std::move(peer), "", aim});
  return true;
}

bool LimitTime(std::string what, std::string ours, double nanoseconds) {
  Promises().push_back({std::move(what), std::move(ours), "", "", nanoseconds});
  return true;
}

bool LimitCounter(std::string what, std::string ours, std::string counter, double maximum) {
  Promises().push_back({std::move(what), std::move(ours), "", std::move(counter), maximum});
  return true;
}

void ComparisonReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    const bool isSingle = run.run_type == Run::RT_Iteration;
    if (run.error_occurred || (!isSingle && run.aggregate_name != "median")) continue;
    Result result;
    result.nanoseconds =
        run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
    for (const auto& [name, counter] : run.counters) result.counters[name] = counter.value;
    Results()[run.run_name.str()] = std::move(result);
  }
}

void ComparisonReporter::Finalize() {
  ConsoleReporter::Finalize();
  std::printf("\n");
  for (const Promise& promise : Promises()) Print(promise);
  std::printf("\n");
}

}  // namespace Kest::Bench
