// Integers as floating-point numbers, the same on any floating-point unit.
#pragma once

#include <concepts>
#include <cstdint>

namespace Kest {

// The floating-point number nearest to `value`. Compilers for 32-bit x86 bring the top bit of a
// uint64_t in by an x87 addition, which rounds to as few bits as the process has set; a signed
// number they load as it is. So one with the top bit goes in halves, with a last bit
// for what was cut.
template <std::floating_point T>
T RoundToNearest(uint64_t value) {
  if (value >> 63 == 0) return static_cast<T>(static_cast<int64_t>(value));
  return 2 * static_cast<T>(static_cast<int64_t>(value >> 1 | (value & 1)));
}

}  // namespace Kest
