#include "base/platform.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>

#include "base/platform_system.h"

namespace Kest {
namespace {

constexpr int64_t kUnset = std::numeric_limits<int64_t>::min();

std::atomic<int64_t> firstUse = kUnset;

}  // namespace

LocalTime LocalTimeAt(int64_t wallMilliseconds) {
  using namespace std::chrono;
  const sys_time<milliseconds> utc{milliseconds(wallMilliseconds)};
  const auto local =
      utc + seconds(SystemZoneOffset(floor<seconds>(utc).time_since_epoch().count()));
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

int64_t MillisecondsSinceFirstUse() {
  const int64_t now = MonotonicMilliseconds();
  int64_t first = kUnset;
  if (firstUse.compare_exchange_strong(first, now)) return 0;
  return std::max<int64_t>(0, now - first);  // another thread's first use may be after `now`
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

}  // namespace Kest
