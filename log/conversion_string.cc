#include <algorithm>
#include <cstdlib>
#include <limits>

#include "base/ascii.h"
#include "log/conversion.h"

namespace Kest {
namespace {

constexpr int64_t kMaximumField = 4096;  // no output is longer
constexpr LetterSet kLetters("diouxXcsfFeEgGaAp");

char At(std::string_view text, size_t position) {
  return position < text.size() ? text[position] : '\0';
}

uint64_t ReadNumber(std::string_view text, size_t* position) {
  constexpr uint64_t kLimit = std::numeric_limits<uint32_t>::max();
  uint64_t number = 0;
  for (; IsDigit(At(text, *position)); ++*position) {
    number = std::min(number * 10 + static_cast<uint64_t>(text[*position] - '0'), kLimit);
  }
  return number;
}

void ReadFlags(std::string_view text, size_t* position, Conversion* conversion) {
  for (;; ++*position) {
    switch (At(text, *position)) {
      case '-':
        conversion->left = true;
        break;
      case '+':
        conversion->plus = true;
        break;
      case ' ':
        conversion->space = true;
        break;
      case '#':
        conversion->alternate = true;
        break;
      case '0':
        conversion->zeros = true;
        break;
      default:
        return;
    }
  }
}

// A number or a star. False: a star with a broken position.
bool ReadField(std::string_view text, size_t* position, uint64_t* number, StarArgument* star) {
  if (At(text, *position) != '*') {
    *number = ReadNumber(text, position);
    return true;
  }
  star->present = true;
  ++*position;
  if (!IsDigit(At(text, *position))) return true;
  star->position = ReadPosition(text, position);
  return star->position != 0 && At(text, (*position)++) == '$';
}

// Flags, width and precision: all that may precede the length modifier.
bool ReadFields(std::string_view text, size_t* position, ConversionText* result) {
  Conversion& conversion = result->conversion;
  conversion.isPlain = false;
  uint64_t number = 0;
  ReadFlags(text, position, &conversion);
  if (!ReadField(text, position, &number, &result->width)) return false;
  conversion.SetWidth(static_cast<int64_t>(number));
  if (At(text, *position) != '.') return true;
  ++*position;
  number = 0;
  if (!ReadField(text, position, &number, &result->precision)) return false;
  conversion.SetPrecision(static_cast<int64_t>(number));
  return true;
}

}  // namespace

void Conversion::SetWidth(int64_t value) {
  if (value < 0) left = true;
  constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
  width = static_cast<int32_t>(std::min(value < -kMost ? kMost : std::abs(value), kMost));
}

void Conversion::SetPrecision(int64_t value) {
  precision = static_cast<int32_t>(std::clamp<int64_t>(value, -1, kMaximumField));
}

uint64_t ReadPosition(std::string_view text, size_t* position) {
  return At(text, *position) == '0' ? 0 : ReadNumber(text, position);
}

bool ReadConversion(std::string_view text, ConversionText* result) {
  size_t position = 0;
  const bool isPlain = At(text, 0) >= 'A';  // every flag, digit, star and point sorts below
  if (!isPlain && !ReadFields(text, &position, result)) return false;
  result->conversion.length = ReadLength(text, &position);
  result->conversion.letter = At(text, position);
  result->size = position + 1;
  return kLetters.Has(result->conversion.letter);
}

}  // namespace Kest
