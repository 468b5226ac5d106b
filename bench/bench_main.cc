#include <benchmark/benchmark.h>

#include <vector>

#include "bench/comparison.h"

// Peers are measured turn by turn, several times, and compared by their medians: a machine that
// slows down in between slows both. Options given by the user come last and win.
int main(int argc, char** argv) {
  char repetitions[] = "--benchmark_repetitions=5";
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  char minimumTime[] = "--benchmark_min_time=0.1";
  char aggregates[] = "--benchmark_display_aggregates_only=true";
  std::vector<char*> options = {argv[0], repetitions, interleaving, minimumTime, aggregates};
  options.insert(options.end(), argv + 1, argv + argc);
  options.push_back(nullptr);
  int count = static_cast<int>(options.size()) - 1;
  benchmark::Initialize(&count, options.data());
  if (benchmark::ReportUnrecognizedArguments(count, options.data())) return 1;
  Kest::Bench::ComparisonReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
