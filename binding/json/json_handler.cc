#include "binding/json/json_handler.h"

#include <cassert>
#include <cmath>

#include "base/number_string.h"
#include "base/utf8.h"

namespace Kest {
// The reader has checked the grammar; the number stays where it was.
bool JsonHandler::RawNumber(const char* chars, uint32_t size, bool) {
  const std::string_view text(pass_ == Pass::kOptimistic ? chars - size : chars, size);
  const bool isNegative = text.front() == '-';
  uint64_t magnitude = 0;
  if (TryParseDigits(text.substr(isNegative ? 1 : 0), &magnitude)) {
    if (!isNegative) return Check(builder_.Unsigned(magnitude));
    if (magnitude <= uint64_t{1} << 63) {
      return Check(builder_.Signed(static_cast<int64_t>(0 - magnitude)));
    }
  }
  double value = 0;
  const size_t length = ParseDecimal(text, &value);
  assert(length == size);
  static_cast<void>(length);
  if (!std::isfinite(value)) {
    failure_ = "Number too big to be stored in double.";
    return false;
  }
  return Check(builder_.Float(value));
}

bool JsonHandler::CheckSurrogates(std::string_view text) {
  if (IsValidUtf8(text)) return true;
  failure_ = "The surrogate pair in string is invalid.";
  return false;
}

}  // namespace Kest
