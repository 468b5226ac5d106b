#include "base/number_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/ascii.h"
#include "base/round_to_nearest.h"

namespace Kest {
namespace {

constexpr std::string_view kWhitespace = " \t\n\v\f\r";

// What stands in front of the digits.
struct Prefix {
  bool isNegative = false;
  std::string_view rest;
};

Prefix CutPrefix(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kWhitespace), text.size()));
  Prefix prefix;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    prefix.isNegative = text.front() == '-';
    text.remove_prefix(1);
  }
  prefix.rest = text;
  return prefix;
}

bool IsHexPrefix(std::string_view text) {
  return text.size() > 2 && text[0] == '0' && ToLower(text[1]) == 'x';
}

NumberParseStatus ParseMagnitude(std::string_view digits, uint64_t* magnitude) {
  int base = 10;
  if (IsHexPrefix(digits)) {
    base = 16;
    digits.remove_prefix(2);
  } else if (!digits.empty() && digits.front() == '0') {
    base = 8;
  }
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, *magnitude, base);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) {
    return NumberParseStatus::kMalformed;
  }
  return result.ec == std::errc() ? NumberParseStatus::kOk : NumberParseStatus::kOutOfRange;
}

bool IsNamedNumber(std::string_view text) {
  if (EqualIgnoringCase(text, "inf") || EqualIgnoringCase(text, "infinity")) return true;
  if (text.size() < 3 || !EqualIgnoringCase(text.substr(0, 3), "nan")) return false;
  if (text.size() == 3) return true;
  if (text.size() < 5 || text[3] != '(' || text.back() != ')') return false;
  const std::string_view name = text.substr(4, text.size() - 5);
  return std::all_of(name.begin(), name.end(), [](char c) {
    return c == '_' || IsDigit(c) || (ToLower(c) >= 'a' && ToLower(c) <= 'z');
  });
}

// What from_chars leaves open when the value fits no double: too large or too small.
double BeyondRange(std::string_view digits, bool isHex) {
  int64_t order = 0;  // position of the first digit that counts, in digits before the point
  bool inFraction = false;
  bool isZero = true;
  size_t i = 0;
  for (; i < digits.size() && ToLower(digits[i]) != (isHex ? 'p' : 'e'); ++i) {
    if (digits[i] == '.') {
      inFraction = true;
    } else if (!isZero || digits[i] != '0') {
      isZero = false;
      if (!inFraction) ++order;
    } else if (inFraction) {
      --order;
    }
  }
  int64_t exponent = 0;
  if (i < digits.size()) {
    const bool isNegative = i + 1 < digits.size() && digits[i + 1] == '-';
    const bool hasSign = isNegative || (i + 1 < digits.size() && digits[i + 1] == '+');
    const char* first = digits.data() + i + (hasSign ? 2 : 1);
    const auto result = std::from_chars(first, digits.data() + digits.size(), exponent);
    constexpr int64_t kHuge = int64_t{1} << 40;  // beyond any count of digits
    if (result.ec == std::errc::result_out_of_range || exponent > kHuge) exponent = kHuge;
    if (isNegative) exponent = -exponent;
  }
  const int64_t total = (isHex ? 4 * order : order) + exponent;
  return !isZero && total > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// Significands up to 2^53 with a power of ten up to 10^22 need one rounding: a multiplication or a
// division does it exactly, and the same on platforms whose library rounds twice.
bool TrySmallDecimal(uint64_t significand, int64_t exponent, double* value) {
  static constexpr std::array<double, 23> kPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  if (significand > (uint64_t{1} << 53) || exponent < -22 || exponent > 22) return false;
  const auto number = RoundToNearest<double>(significand);
  *value = exponent < 0 ? number / kPowers[static_cast<size_t>(-exponent)]
                        : number * kPowers[static_cast<size_t>(exponent)];
  return true;
}

// Reads digits with at most one point among them; 0 characters when there is no digit, or when more
// than 18 of them count.
size_t ParseSignificand(std::string_view text, uint64_t* significand, int64_t* exponent) {
  int digits = 0;
  size_t points = 0;
  size_t i = 0;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '.' && points == 0) {
      points = 1;
      continue;
    }
    if (c < '0' || c > '9') break;
    *significand = *significand * 10 + static_cast<uint64_t>(c - '0');
    *exponent -= static_cast<int64_t>(points);
    if (*significand != 0 && ++digits > 18) return 0;
  }
  return i > points ? i : 0;
}

// Reads "e", an optional sign and digits, if they come next; 0 characters when they do not.
size_t ParseExponent(std::string_view text, int64_t* exponent) {
  if (text.empty() || ToLower(text[0]) != 'e') return 0;
  const bool isNegative = text.size() > 1 && text[1] == '-';
  const size_t first = isNegative || (text.size() > 1 && text[1] == '+') ? 2 : 1;
  constexpr int64_t kHuge = 1'000'000;  // beyond any power that counts
  int64_t power = 0;
  size_t i = first;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    power = std::min(power * 10 + (text[i] - '0'), kHuge);
  }
  if (i == first) return 0;
  *exponent += isNegative ? -power : power;
  return i;
}

// Reads a number that TrySmallDecimal takes, of any form; 0 characters when it is none.
size_t ParseSmallDecimal(std::string_view text, double* value) {
  uint64_t significand = 0;
  int64_t exponent = 0;
  size_t length = ParseSignificand(text, &significand, &exponent);
  if (length == 0) return 0;
  length += ParseExponent(text.substr(length), &exponent);
  return TrySmallDecimal(significand, exponent, value) ? length : 0;
}

size_t ParseUnsignedFloat(std::string_view digits, bool isHex, double* value) {
  const auto format = isHex ? std::chars_format::hex : std::chars_format::general;
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, *value, format);
  const auto length = static_cast<size_t>(result.ptr - digits.data());
  if (result.ec == std::errc::invalid_argument) return 0;
  if (result.ec != std::errc()) *value = BeyondRange(digits.substr(0, length), isHex);
  return length;
}

}  // namespace

NumberParseStatus ParseIntegerText(std::string_view text, uint64_t* value) {
  const Prefix prefix = CutPrefix(text);
  uint64_t magnitude = 0;
  const NumberParseStatus outcome = ParseMagnitude(prefix.rest, &magnitude);
  if (outcome != NumberParseStatus::kOk) return outcome;
  if (prefix.isNegative && magnitude != 0) return NumberParseStatus::kOutOfRange;
  *value = magnitude;
  return NumberParseStatus::kOk;
}

NumberParseStatus ParseIntegerText(std::string_view text, int64_t* value) {
  const Prefix prefix = CutPrefix(text);
  uint64_t magnitude = 0;
  const NumberParseStatus outcome = ParseMagnitude(prefix.rest, &magnitude);
  if (outcome != NumberParseStatus::kOk) return outcome;
  const uint64_t bound = (uint64_t{1} << 63) - (prefix.isNegative ? 0 : 1);
  if (magnitude > bound) return NumberParseStatus::kOutOfRange;
  *value = static_cast<int64_t>(prefix.isNegative ? 0 - magnitude : magnitude);
  return NumberParseStatus::kOk;
}

NumberParseStatus ParseFloatText(std::string_view text, double* value) {
  const Prefix prefix = CutPrefix(text);
  if (IsNamedNumber(prefix.rest)) return NumberParseStatus::kOutOfRange;
  const bool isHex = IsHexPrefix(prefix.rest);
  const std::string_view digits = prefix.rest.substr(isHex ? 2 : 0);
  // A second sign and names in other places are no digits.
  if (digits.empty() || digits.front() == '-' || ToLower(digits.front()) == 'i' ||
      ToLower(digits.front()) == 'n') {
    return NumberParseStatus::kMalformed;
  }
  double number = 0;
  const size_t length =
      isHex ? ParseUnsignedFloat(digits, true, &number) : ParseDecimal(digits, &number);
  if (length == 0 || length != digits.size()) return NumberParseStatus::kMalformed;
  if (!std::isfinite(number)) return NumberParseStatus::kOutOfRange;
  *value = prefix.isNegative ? -number : number;
  return NumberParseStatus::kOk;
}

size_t ParseDecimal(std::string_view text, double* value) {
  const bool isNegative = !text.empty() && text.front() == '-';
  const std::string_view digits = text.substr(isNegative ? 1 : 0);
  size_t length = ParseSmallDecimal(digits, value);
  if (length == 0) length = ParseUnsignedFloat(digits, /*isHex=*/false, value);
  if (length == 0) return 0;
  if (isNegative) *value = -*value;
  return length + (isNegative ? 1 : 0);
}

std::string RoundTripString(double value) {
  std::array<char, 32> text;
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17);
  return {text.data(), result.ptr};
}

}  // namespace Kest
