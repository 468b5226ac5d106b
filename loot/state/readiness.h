// Readiness: which data sources have answered, and whether that is enough.
// Bits are only ever added, a logout included; the goal may change at any time.
// Threads: no lock; handlers and module tasks only.
#pragma once

#include <cstdint>

namespace Kest::Client::Loot {

// One bit for each data source that items are enriched with.
enum ReadinessBit : uint8_t {
  kReadyChampions = 1,
  kReadySkins = 2,
  kReadyWardSkins = 4,
  kReadySummonerIcons = 8,
  kReadyTournamentLogos = 16,
  kReadyEmotes = 32,
};

class Readiness {
 public:
  // Adds `bits` and replaces the goal. Returns whether Ready() turned over by that.
  [[nodiscard]] bool Set(uint8_t bits, uint8_t goal);

  // Every goal bit is set. A goal of 0 is always reached; one that holds a bit without a source
  // never.
  bool Ready() const { return (flags_ & goal_) == goal_; }

  uint8_t flags() const { return flags_; }
  uint8_t goal() const { return goal_; }

 private:
  uint8_t flags_ = 0;
  uint8_t goal_ = 63;  // all six sources
};

}  // namespace Kest::Client::Loot
