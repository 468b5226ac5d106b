#include "binding/json/json_float.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

namespace Kest {
namespace {

constexpr int kMostIntegerDigits = 21;
constexpr int kMostLeadingZeros = 5;

// A number as 0.DIGITS times ten to the `point`.
struct Digits {
  std::array<char, 20> digits;
  int size = 0;
  int point = 0;
};

// `text` is "d.ddde-xx", as std::to_chars has it.
Digits Split(std::string_view text) {
  Digits result;
  const size_t mark = text.find('e');
  for (const char c : text.substr(0, mark)) {
    if (c != '.') result.digits[static_cast<size_t>(result.size++)] = c;
  }
  const size_t first = mark + (text[mark + 1] == '+' ? 2 : 1);
  std::from_chars(text.data() + first, text.data() + text.size(), result.point);
  ++result.point;
  return result;
}

char* Fill(char* to, int count, char c) {
  return std::fill_n(to, std::max(count, 0), c);
}

char* WriteFixed(const Digits& number, char* to) {
  const int whole = std::clamp(number.point, 0, number.size);
  to = std::copy_n(number.digits.data(), whole, to);
  to = Fill(to, number.point - whole, '0');
  if (number.point <= 0) *to++ = '0';
  *to++ = '.';
  to = Fill(to, -number.point, '0');
  to = std::copy_n(number.digits.data() + whole, number.size - whole, to);
  if (whole == number.size) *to++ = '0';
  return to;
}

char* WriteScientific(const Digits& number, char* to) {
  *to++ = number.digits[0];
  if (number.size > 1) {
    *to++ = '.';
    to = std::copy_n(number.digits.data() + 1, number.size - 1, to);
  }
  *to++ = 'e';
  return std::to_chars(to, to + 5, number.point - 1).ptr;
}

}  // namespace

size_t WriteJsonFloat(double value, char* to) {
  char* const start = to;
  std::array<char, kMaxJsonFloat> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific);
  std::string_view shortest(text.data(), static_cast<size_t>(end.ptr - text.data()));
  if (shortest.front() == '-') {
    *to++ = '-';
    shortest.remove_prefix(1);
  }
  const Digits number = Split(shortest);
  const bool isFixed = number.point > -kMostLeadingZeros - 1 && number.point <= kMostIntegerDigits;
  to = isFixed ? WriteFixed(number, to) : WriteScientific(number, to);
  return static_cast<size_t>(to - start);
}

}  // namespace Kest
