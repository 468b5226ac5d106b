// Random numbers that are the same everywhere for the same seed.
#pragma once

#include <cstdint>
#include <random>

namespace Kest::Host {

class SeededRandom {
 public:
  explicit SeededRandom(uint64_t seed) : engine_(seed) {}

  uint64_t Bits() { return engine_(); }
  // At least 0 and below 1. The standard's distributions differ between libraries.
  double Fraction() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }
  // At least 0 and below `bound`. REQUIRES: bound > 0. The bias is below bound / 2^64.
  uint64_t Below(uint64_t bound) { return engine_() % bound; }

 private:
  std::mt19937_64 engine_;
};

}  // namespace Kest::Host
