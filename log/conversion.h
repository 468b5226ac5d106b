// The printf conversions of this system: read from text, rendered without the C library, so that no
// locale, no width and no argument type can do harm.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "log/fixed_buffer.h"
#include "log/format_argument.h"

namespace Kest {

enum class LengthModifier : uint8_t {
  kNone,
  kChar,
  kShort,
  kLong,
  kLongLong,
  kMax,
  kSize,
  kDiff,
  kLongDouble
};

// "%-08.3hhx" after the "%".
struct Conversion {
  bool isPlain = true;     // no flag, width or precision: the common case, rendered straight
  bool left = false;       // '-'
  bool plus = false;       // '+'
  bool space = false;      // ' '
  bool alternate = false;  // '#'
  bool zeros = false;      // '0'
  int32_t width = 0;
  int32_t precision = -1;  // -1: none given
  LengthModifier length = LengthModifier::kNone;
  char letter = 's';

  // A negative width is the flag '-' and its amount. What of it goes beyond the output is not
  // written.
  void SetWidth(int64_t value);
  // A negative precision is none; one above 4096 counts as 4096.
  void SetPrecision(int64_t value);
};

// A set of letters from 'A' to 'z', asked with one shift.
class LetterSet {
 public:
  consteval explicit LetterSet(std::string_view letters) {
    for (const char letter : letters) bits_ |= uint64_t{1} << (letter - 'A');
  }
  constexpr bool Has(char letter) const {
    const unsigned bit = static_cast<unsigned char>(letter) - static_cast<unsigned>('A');
    return bit < 64 && (bits_ >> bit & 1) != 0;
  }

 private:
  uint64_t bits_ = 0;
};

// A width or precision that is taken from an argument.
struct StarArgument {
  bool present = false;
  uint64_t position = 0;  // 0: the next argument in sequence
};

struct ConversionText {
  Conversion conversion;
  StarArgument width;
  StarArgument precision;
  size_t size = 0;  // bytes read, the letter included
};

// Reads a conversion at the start of `text`. False: it is malformed or has an unknown letter ("n"
// is one); `*result` is then unspecified.
bool ReadConversion(std::string_view text, ConversionText* result);

// Reads a length modifier, if there is one, at `*position` and moves it past it.
inline LengthModifier ReadLength(std::string_view text, size_t* position) {
  const auto at = [text](size_t place) { return place < text.size() ? text[place] : '\0'; };
  const char first = at(*position);
  if (!LetterSet("hljztL").Has(first)) return LengthModifier::kNone;
  const bool isDoubled = (first == 'h' || first == 'l') && at(*position + 1) == first;
  *position += isDoubled ? 2 : 1;
  switch (first) {
    case 'h':
      return isDoubled ? LengthModifier::kChar : LengthModifier::kShort;
    case 'l':
      return isDoubled ? LengthModifier::kLongLong : LengthModifier::kLong;
    case 'j':
      return LengthModifier::kMax;
    case 'z':
      return LengthModifier::kSize;
    case 't':
      return LengthModifier::kDiff;
    default:
      return LengthModifier::kLongDouble;
  }
}

// Reads decimal digits at `*position` and moves it past them. 0 without a digit or with a leading
// zero (nothing is moved then); very large numbers stay very large.
uint64_t ReadPosition(std::string_view text, size_t* position);

// Writes `argument` by `conversion`. False, with nothing written: the letter cannot show that type.
bool Render(const Conversion& conversion, const FormatArgument& argument, FixedBuffer& out);

// Writes `argument` in its default form.
void RenderDefault(const FormatArgument& argument, FixedBuffer& out);

}  // namespace Kest
