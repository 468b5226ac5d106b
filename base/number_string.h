// String to number, exact, the same on every platform and in every locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Kest {

enum class NumberParseStatus { kOk, kMalformed, kOutOfRange };

// The whole text as a number: leading whitespace, then one sign, then decimal digits, "0x"
// and hexadecimal digits, or "0" and octal digits. Anything after the digits, or no digit at all,
// is malformed. A negative text is out of range for an unsigned number unless it is zero.
// `*value` is set for kOk only.
NumberParseStatus ParseIntegerText(std::string_view text, int64_t* value);
NumberParseStatus ParseIntegerText(std::string_view text, uint64_t* value);

// The same for a decimal or hexadecimal floating-point number. One too large is beyond range, and
// so are the infinities and NaN by name; one too small is a tiny value or zero.
NumberParseStatus ParseFloatText(std::string_view text, double* value);

// The value of a text of digits alone; false when it holds anything else or needs more than 64
// bits.
inline bool TryParseDigits(std::string_view text, uint64_t* value) {
  constexpr size_t kAlwaysFits = 19;
  if (text.size() > kAlwaysFits + 1) return false;
  uint64_t number = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto digit = static_cast<uint64_t>(static_cast<uint8_t>(text[i] - '0'));
    if (digit > 9) return false;
    if (i == kAlwaysFits && number > (UINT64_MAX - digit) / 10) return false;
    number = number * 10 + digit;
  }
  *value = number;
  return true;
}

// The double nearest to a decimal number: an optional "-", digits, an optional fraction, an
// optional exponent. Infinite when it is too large, zero when it is too small. Returns how many
// characters were read: 0 when there is no number.
size_t ParseDecimal(std::string_view text, double* value);

// A form that reads back as the same value, for messages.
std::string RoundTripString(double value);

}  // namespace Kest
