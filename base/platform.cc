#include "base/platform.h"

#include <atomic>
#include <chrono>
#include <limits>

#include "base/platform_system.h"

namespace Kest {
namespace {

constexpr int64_t kUnset = std::numeric_limits<int64_t>::min();

std::atomic<bool> clockStopped = false;
std::atomic<int64_t> stoppedWall = 0;
std::atomic<int64_t> stoppedMonotonic = 0;
std::atomic<int64_t> firstUse = kUnset;
std::atomic<bool (*)(UuidBytes*)> uuidSource = nullptr;

// Asking the system for the zone is slow, so the offset is kept for the minute it was asked for:
// minute and offset share one word, so that no lock is needed.
constexpr int64_t kOffsetRange = 1 << 18;  // offsets are within a day, either way
std::atomic<int64_t> minuteAndOffset = kUnset;

int64_t ZoneOffset(int64_t seconds) {
  const int64_t minute = seconds / 60;
  const int64_t kept = minuteAndOffset.load(std::memory_order_relaxed);
  if (kept != kUnset && kept / kOffsetRange == minute) {
    return kept % kOffsetRange - kOffsetRange / 2;
  }
  const int64_t offset = SystemZoneOffset(seconds);
  if (minute >= 0) {
    minuteAndOffset.store(minute * kOffsetRange + offset + kOffsetRange / 2,
                          std::memory_order_relaxed);
  }
  return offset;
}

void StopClock(int64_t wallMilliseconds, int64_t monotonicMilliseconds) {
  stoppedWall = wallMilliseconds;
  stoppedMonotonic = monotonicMilliseconds;
  clockStopped = true;
}

void ForgetZone() {
  SystemReloadZone();
  minuteAndOffset = kUnset;
}

}  // namespace

int64_t WallClockMilliseconds() {
  return clockStopped ? stoppedWall.load() : SystemWallClockMilliseconds();
}

int64_t WallClockSeconds() {
  return WallClockMilliseconds() / 1000;
}

LocalTime LocalTimeNow() {
  using namespace std::chrono;
  const sys_time<milliseconds> utc{milliseconds(WallClockMilliseconds())};
  const auto local = utc + seconds(ZoneOffset(floor<seconds>(utc).time_since_epoch().count()));
  const auto day = floor<days>(local);
  const year_month_day date(day);
  const hh_mm_ss time(local - day);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int32_t>(static_cast<unsigned>(date.month())),
          .day = static_cast<int32_t>(static_cast<unsigned>(date.day())),
          .hour = static_cast<int32_t>(time.hours().count()),
          .minute = static_cast<int32_t>(time.minutes().count()),
          .second = static_cast<int32_t>(time.seconds().count()),
          .millisecond = static_cast<int32_t>(time.subseconds().count())};
}

int64_t MonotonicMilliseconds() {
  return clockStopped ? stoppedMonotonic.load() : SystemMonotonicMilliseconds();
}

int64_t MillisecondsSinceFirstUse() {
  const int64_t now = MonotonicMilliseconds();
  int64_t first = kUnset;
  return firstUse.compare_exchange_strong(first, now) ? 0 : now - first;
}

void SetClockForTests(int64_t wallMilliseconds, int64_t monotonicMilliseconds) {
  ForgetZone();
  StopClock(wallMilliseconds, monotonicMilliseconds);
}

void SetClockForTests(int64_t wallMilliseconds) {
  SetClockForTests(wallMilliseconds, 0);
}

void AdvanceClockForTests(int64_t milliseconds) {
  StopClock(stoppedWall + milliseconds, stoppedMonotonic + milliseconds);
}

void ResetClockForTests() {
  clockStopped = false;
  firstUse = kUnset;
  ForgetZone();
}

bool CreateUuid(UuidBytes* uuid) {
  const auto source = uuidSource.load();
  return source != nullptr ? source(uuid) : SystemCreateUuid(uuid);
}

std::string FormatUuid(const UuidBytes& uuid) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(36);
  for (size_t i = 0; i < uuid.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[uuid[i] >> 4];
    text += kDigits[uuid[i] & 15];
  }
  return text;
}

void SetUuidSourceForTests(bool (*source)(UuidBytes* uuid)) {
  uuidSource = source;
}

}  // namespace Kest
