// What a benchmark program promises beside its bare times: ratios to peers and upper limits. Each
// is printed below the table, from the medians of the same run.
//
//   BENCHMARK(OurLine);
//   BENCHMARK(PeerLine);
//   const bool compared = CompareWithPeer("line to a null sink", "OurLine", "PeerLine", 1.0);
#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace Kest::Bench {

// Prints how many times faster than `peer` the benchmark `ours` is; the aim is at least `aim`.
// Returns true, so that it can initialise a constant.
bool CompareWithPeer(std::string what, std::string ours, std::string peer, double aim);

// Prints the time of `ours`; the aim is at most `nanoseconds`.
bool LimitTime(std::string what, std::string ours, double nanoseconds);

// Prints the value of a counter of `ours`; the aim is at most `maximum`.
bool LimitCounter(std::string what, std::string ours, std::string counter, double maximum);

// The usual console table, followed by the promises.
class ComparisonReporter : public benchmark::ConsoleReporter {
 public:
  ComparisonReporter() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;
};

}  // namespace Kest::Bench
