#include "host/clock/time_text.h"

#include <chrono>
#include <cstdio>

namespace Kest::Host {
namespace {

using namespace std::chrono;

// Takes digits from the front of a text, and the marks between them.
class Digits {
 public:
  explicit Digits(std::string_view text) : rest_(text) {}

  int Take(size_t count) {
    int number = 0;
    for (; count > 0; --count) {
      const char c = TakeAny();
      isGood_ = isGood_ && c >= '0' && c <= '9';
      number = number * 10 + (c - '0');
    }
    return number;
  }
  void Skip(char expected) { isGood_ = TakeAny() == expected && isGood_; }
  bool Begins(char c) const { return rest_.starts_with(c); }
  bool BeginsWithDigit() const { return !rest_.empty() && rest_[0] >= '0' && rest_[0] <= '9'; }
  bool HasEndedWell() const { return isGood_ && rest_.empty(); }

 private:
  char TakeAny() {
    if (rest_.empty()) return '\0';
    const char first = rest_.front();
    rest_.remove_prefix(1);
    return first;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

milliseconds TakeFraction(Digits& digits) {
  if (!digits.Begins('.')) return {};
  digits.Skip('.');
  milliseconds fraction{100 * digits.Take(1)};
  for (const int unit : {10, 1}) {
    if (digits.BeginsWithDigit()) fraction += milliseconds(unit * digits.Take(1));
  }
  return fraction;
}

}  // namespace

std::string FormatTime(int64_t time) {
  const sys_time<milliseconds> moment{milliseconds(time)};
  const auto day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss clock(moment - day);
  char text[64];
  std::snprintf(
      text, sizeof(text), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

std::optional<int64_t> ParseTime(std::string_view text) {
  Digits digits(text);
  const year year(digits.Take(4));
  digits.Skip('-');
  const month month(static_cast<unsigned>(digits.Take(2)));
  digits.Skip('-');
  const day day(static_cast<unsigned>(digits.Take(2)));
  digits.Skip('T');
  const int hour = digits.Take(2);
  digits.Skip(':');
  const int minute = digits.Take(2);
  digits.Skip(':');
  const int second = digits.Take(2);
  const milliseconds fraction = TakeFraction(digits);
  digits.Skip('Z');
  const year_month_day date = year / month / day;
  if (!digits.HasEndedWell() || !date.ok() || hour > 23 || minute > 59 || second > 59) return {};
  const auto moment = sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + fraction;
  const int64_t time = moment.time_since_epoch().count();
  return time < 0 ? std::nullopt : std::optional(time);
}

}  // namespace Kest::Host
