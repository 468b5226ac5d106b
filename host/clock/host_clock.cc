#include "host/clock/host_clock.h"

#include "base/platform.h"

namespace Kest::Host {
namespace {

using std::chrono::duration_cast;
using std::chrono::steady_clock;
using Fraction = std::chrono::duration<double, std::micro>;

}  // namespace

const HostClock& HostClock::Real() {
  static const HostClock clock;
  return clock;
}

void HostClock::Set(const ClockSetting& setting) {
  const MutexLock lock(mutex_);
  const int64_t shown = setting.now.value_or(NowLocked());
  elapsed_ = ElapsedLocked();
  setAt_ = steady_clock::now();
  shown_ = shown;
  mode_ = setting.mode;
  scale_ = mode_ == ClockMode::kFrozen ? 0 : mode_ == ClockMode::kReal ? 1 : setting.scale;
}

void HostClock::MoveTo(HostTime time) {
  const MutexLock lock(mutex_);
  if (mode_ != ClockMode::kFrozen || time <= elapsed_) return;
  shown_ += duration_cast<std::chrono::milliseconds>(time).count() -
            duration_cast<std::chrono::milliseconds>(elapsed_).count();
  elapsed_ = time;
}

ClockSetting HostClock::Show() const {
  const MutexLock lock(mutex_);
  return {mode_, mode_ == ClockMode::kFrozen ? 1 : scale_, NowLocked()};
}

HostTime HostClock::Elapsed() const {
  const MutexLock lock(mutex_);
  return ElapsedLocked();
}

bool HostClock::IsFrozen() const {
  const MutexLock lock(mutex_);
  return mode_ == ClockMode::kFrozen;
}

std::optional<HostClock::SystemTime> HostClock::SystemTimeOf(HostTime time) const {
  const MutexLock lock(mutex_);
  if (mode_ == ClockMode::kFrozen) return std::nullopt;
  const Fraction wait = Fraction(time - elapsed_) / scale_;
  return setAt_ + std::chrono::ceil<steady_clock::duration>(wait);
}

HostTime HostClock::ElapsedLocked() const {
  const Fraction passed = steady_clock::now() - setAt_;
  return elapsed_ + duration_cast<HostTime>(passed * scale_);
}

int64_t HostClock::NowLocked() const {
  if (mode_ == ClockMode::kReal) return WallClockMilliseconds();
  return shown_ + duration_cast<std::chrono::milliseconds>(ElapsedLocked() - elapsed_).count();
}

}  // namespace Kest::Host
