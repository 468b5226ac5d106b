// Counts heap allocations and bytes of a benchmark program, whose operator new it replaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace Kest::Bench {

struct Allocated {
  uint64_t count = 0;
  uint64_t bytes = 0;  // asked for
};

// Counts what all threads allocate from StartCounting on; nothing is counted, nor costs time,
// after StopCounting.
void StartCounting();
Allocated StopCounting();

// What the second of two calls of `run` allocates.
template <typename Run>
Allocated CountAllocations(Run run) {
  run();
  StartCounting();
  run();
  return StopCounting();
}

template <typename Run>
double Allocations(Run run) {
  return static_cast<double>(CountAllocations(std::move(run)).count);
}

// Bytes in the heap blocks that are in use, in the memory manager's own sizes.
size_t LiveBytes();

}  // namespace Kest::Bench
