#include "binding/json/json_number.h"

#include <cassert>
#include <cmath>

#include "base/number_string.h"

namespace Kest {

JsonNumber AddJsonNumber(TreeBuilder& builder, std::string_view text) {
  const auto outcome = [](bool isAdded) {
    return isAdded ? JsonNumber::kAdded : JsonNumber::kRefused;
  };
  const bool isNegative = text.front() == '-';
  uint64_t magnitude = 0;
  if (TryParseDigits(text.substr(isNegative ? 1 : 0), &magnitude)) {
    if (!isNegative) return outcome(builder.Unsigned(magnitude));
    if (magnitude <= uint64_t{1} << 63) {
      return outcome(builder.Signed(static_cast<int64_t>(0 - magnitude)));
    }
  }
  double value = 0;
  const size_t length = ParseDecimal(text, &value);
  assert(length == text.size());
  static_cast<void>(length);
  if (!std::isfinite(value)) return JsonNumber::kTooBig;
  return outcome(builder.Float(value));
}

}  // namespace Kest
