// Counts the heap allocations of a benchmark program, whose operator new it replaces.
#pragma once

#include <cstdint>

namespace Kest::Bench {

// Allocations of all threads since the program began.
uint64_t AllocationCount();
// Bytes asked for in them.
uint64_t AllocatedBytes();

// Allocations of one call of `run` after a first.
template <typename Run>
double Allocations(Run run) {
  run();
  const uint64_t before = AllocationCount();
  run();
  return static_cast<double>(AllocationCount() - before);
}

// Bytes that one call of `run` asks for.
template <typename Run>
double BytesAllocated(Run run) {
  const uint64_t before = AllocatedBytes();
  run();
  return static_cast<double>(AllocatedBytes() - before);
}

}  // namespace Kest::Bench
