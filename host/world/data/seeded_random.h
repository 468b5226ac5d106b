// Random numbers that are the same everywhere for the same seed.
#pragma once

#include <cstdint>
#include <random>

namespace Kest::Host {

// How far the numbers of a seed have been used.
struct RandomPlace {
  uint64_t seed = 1;
  uint64_t drawn = 0;
};

class SeededRandom {
 public:
  explicit SeededRandom(uint64_t seed) : SeededRandom(RandomPlace{seed, 0}) {}
  // Takes time in proportion to what has been drawn.
  explicit SeededRandom(RandomPlace place) : engine_(place.seed), place_(place) {
    engine_.discard(place.drawn);
  }

  uint64_t Bits() {
    ++place_.drawn;
    return engine_();
  }
  // At least 0 and below 1. The standard's distributions differ between libraries.
  double Fraction() { return static_cast<double>(Bits() >> 11) * 0x1.0p-53; }
  // At least 0 and below `bound`. REQUIRES: bound > 0. The bias is below bound / 2^64.
  uint64_t Below(uint64_t bound) { return Bits() % bound; }

  const RandomPlace& place() const { return place_; }

 private:
  std::mt19937_64 engine_;
  RandomPlace place_;
};

}  // namespace Kest::Host
