// The time that the plugin and the emulated platform live in: the system's, one that is frozen
// until it is moved on, or one that runs at a speed of its own.
//
// The clock has two readings. The time of day is what it shows; it may be set to anything. The host
// time is what has passed on this clock since it was made; it never goes back, and what waits,
// waits for a host time.
//
// Threads: any.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/mutex.h"

namespace Kest::Host {

using HostTime = std::chrono::microseconds;

enum class ClockMode { kReal, kFrozen, kScaled };
inline constexpr std::array<std::string_view, 3> kClockModes = {"real", "frozen", "scaled"};
inline std::string_view ClockModeName(ClockMode mode) {
  return kClockModes[static_cast<size_t>(mode)];
}

struct ClockSetting {
  ClockMode mode = ClockMode::kReal;
  double scale = 1;                 // of kScaled: what passes in one second of the system; above 0
  std::optional<int64_t> now = {};  // time of day, milliseconds since 1970; not of kReal
};

class HostClock {
 public:
  using SystemTime = std::chrono::steady_clock::time_point;

  explicit HostClock(const ClockSetting& setting) { Set(setting); }
  HostClock() : HostClock(ClockSetting{}) {}
  HostClock(const HostClock&) = delete;
  HostClock& operator=(const HostClock&) = delete;

  // A clock that is always the system's.
  static const HostClock& Real();

  // From now on the clock runs as `setting` says. Without a time of day it goes on from the present
  // one, but for kReal, which is the system's. The host time goes on from where it is.
  void Set(const ClockSetting& setting) KEST_EXCLUDES(mutex_);
  // Moves both readings on until `time` has come. Does nothing when it has, or when the clock runs.
  void MoveTo(HostTime time) KEST_EXCLUDES(mutex_);

  // How the clock runs, and the time of day it shows.
  ClockSetting Show() const KEST_EXCLUDES(mutex_);
  // The time of day in milliseconds since 1970.
  int64_t Now() const { return *Show().now; }
  HostTime Elapsed() const KEST_EXCLUDES(mutex_);
  bool IsFrozen() const KEST_EXCLUDES(mutex_);
  // When `time` comes if nothing is set meanwhile; never before. Nothing while the clock is frozen.
  std::optional<SystemTime> SystemTimeOf(HostTime time) const KEST_EXCLUDES(mutex_);

 private:
  HostTime ElapsedLocked() const KEST_REQUIRES(mutex_);
  int64_t NowLocked() const KEST_REQUIRES(mutex_);

  mutable Mutex mutex_;  // a leaf
  ClockMode mode_ KEST_GUARDED_BY(mutex_) = ClockMode::kReal;
  double scale_ KEST_GUARDED_BY(mutex_) = 1;  // 0 while frozen
  // The readings when the clock was set last.
  SystemTime setAt_ KEST_GUARDED_BY(mutex_) = std::chrono::steady_clock::now();
  HostTime elapsed_ KEST_GUARDED_BY(mutex_) = HostTime::zero();
  int64_t shown_ KEST_GUARDED_BY(mutex_) = 0;
};

}  // namespace Kest::Host
