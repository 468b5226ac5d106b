// Counts the heap allocations of a benchmark program, whose operator new it replaces.
#pragma once

#include <cstdint>

#include <benchmark/benchmark.h>

namespace Kest::Bench {

// Allocations of all threads since the program began.
uint64_t AllocationCount();
// Bytes asked for in them.
uint64_t AllocatedBytes();

// Counts what is allocated from its construction on.
class AllocationScope {
 public:
  AllocationScope() : count_(AllocationCount()), bytes_(AllocatedBytes()) {}
  uint64_t Count() const { return AllocationCount() - count_; }
  uint64_t Bytes() const { return AllocatedBytes() - bytes_; }

 private:
  uint64_t count_;
  uint64_t bytes_;
};

// Shows the allocations per iteration as the counter "allocations". Call it after the loop.
inline void ReportAllocations(benchmark::State& state, const AllocationScope& scope) {
  state.counters["allocations"] =
      static_cast<double>(scope.Count()) / static_cast<double>(state.iterations());
}

}  // namespace Kest::Bench
