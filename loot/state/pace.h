// Pace divides work on many items into slices with pauses between, in which other tasks run.
// Threads: module tasks only.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace Kest::Client::Loot {

// Work on fewer items is never interrupted.
inline constexpr size_t kItemsInSlice = 256;

class Pace {
 public:
  // Never pauses.
  Pace() = default;
  // Calls `pause()` after each `slice` steps. It lets others run, and returns whether the work may
  // go on: false when the plugin stops, or when what the work walks over has changed.
  Pace(size_t slice, std::function<bool()> pause)
      : slice_(slice), left_(slice), pause_(std::move(pause)) {}

  // Counts steps of the work, each about that of one item. False: the work is to be given up.
  [[nodiscard]] bool Step(size_t steps = 1) {
    if (!pause_) return true;
    if (steps < left_) {
      left_ -= steps;
      return true;
    }
    left_ = slice_;
    return pause_();
  }

 private:
  size_t slice_ = 0;
  size_t left_ = 0;
  std::function<bool()> pause_;
};

}  // namespace Kest::Client::Loot
