#include "loot/model/decimal_string.h"

#include <algorithm>
#include <limits>

namespace Kest::Client::Loot {

bool IsAllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

Maybe<int32_t> ReadDecimal32(std::string_view text) {
  if (text.empty() || !IsAllDigits(text)) return Failure{"invalid stoi argument"};
  int64_t value = 0;
  for (const char digit : text) {
    value = value * 10 + (digit - '0');
    if (value > std::numeric_limits<int32_t>::max()) return Failure{"stoi argument out of range"};
  }
  return static_cast<int32_t>(value);
}

}  // namespace Kest::Client::Loot
