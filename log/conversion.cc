#include "log/conversion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "base/round_to_nearest.h"

namespace Kest {
namespace {

// Digits of a double in full: 309 before the point, at most 4096 after it, sign and exponent.
constexpr size_t kFloatCapacity = 4608;

constexpr LetterSet kSignedLetters("di");
constexpr LetterSet kIntegerLetters("diouxX");
constexpr LetterSet kHexLetters("xXp");
constexpr LetterSet kNoFloatLetters("cp");

// Writes prefix, zeros and body, padded to the width with spaces, or with zeros after the prefix.
void Pad(const Conversion& conversion, bool zeroFill, std::string_view prefix, size_t zeros,
         std::string_view body, FixedBuffer& out) {
  const size_t size = prefix.size() + zeros + body.size();
  const size_t width = static_cast<size_t>(conversion.width);
  const size_t fill = width > size ? width - size : 0;
  if (!conversion.left && !zeroFill) out.AppendRepeated(' ', fill);
  out.Append(prefix);
  if (!conversion.left && zeroFill) out.AppendRepeated('0', fill);
  out.AppendRepeated('0', zeros);
  out.Append(body);
  if (conversion.left) out.AppendRepeated(' ', fill);
}

std::string_view SignPrefix(const Conversion& conversion, bool negative) {
  return negative ? "-" : conversion.plus ? "+" : conversion.space ? " " : "";
}

void ToUpper(char* first, char* last) {
  for (; first != last; ++first) {
    if (*first >= 'a' && *first <= 'z') *first = static_cast<char>(*first - 'a' + 'A');
  }
}

void RenderText(const Conversion& conversion, std::string_view text, FixedBuffer& out) {
  if (conversion.precision >= 0) text = text.substr(0, static_cast<size_t>(conversion.precision));
  Pad(conversion, false, "", 0, text, out);
}

// The value as its own type sees it: sign and amount for "d" and "i", the bare bits for the others.
struct IntegerArgument {
  bool negative = false;
  uint64_t amount = 0;
};

IntegerArgument ToInteger(const FormatArgument& argument, bool isSigned) {
  if (argument.GetKind() != FormatArgument::Kind::kSigned) return {false, argument.Unsigned()};
  const uint64_t bits = static_cast<uint64_t>(argument.Signed());
  if (argument.Signed() >= 0) return {false, bits};
  if (isSigned) return {true, uint64_t{0} - bits};
  return {false, argument.Bits() < 64 ? bits & ((uint64_t{1} << argument.Bits()) - 1) : bits};
}

// The short way for texts and decimal numbers without flags, width and precision, which are nearly
// all there is. False, with nothing written: not one of them.
bool RenderPlain(char letter, const FormatArgument& argument, FixedBuffer& out) {
  const FormatArgument::Kind kind = argument.GetKind();
  if (kind == FormatArgument::Kind::kText && letter == 's') {
    out.Append(argument.Text());
    return true;
  }
  if (kind != FormatArgument::Kind::kSigned && kind != FormatArgument::Kind::kUnsigned)
    return false;
  if (letter != 'd' && letter != 'u' && letter != 's') return false;
  const IntegerArgument value = ToInteger(argument, letter != 'u');
  if (value.negative) out.Append('-');
  out.AppendDecimal(value.amount);
  return true;
}

void FormatInteger(const Conversion& conversion, const FormatArgument& argument, FixedBuffer& out) {
  const bool isSigned = kSignedLetters.Has(conversion.letter);
  const bool isHex = kHexLetters.Has(conversion.letter);
  const int base = isHex ? 16 : conversion.letter == 'o' ? 8 : 10;
  const IntegerArgument value = ToInteger(argument, isSigned);

  char digits[24];
  char* end = digits;
  if (value.amount != 0 || conversion.precision != 0) {
    end = std::to_chars(digits, digits + sizeof(digits), value.amount, base).ptr;
  }
  if (conversion.letter == 'X') ToUpper(digits, end);
  const std::string_view body(digits, static_cast<size_t>(end - digits));

  size_t zeros = 0;
  if (conversion.precision > static_cast<int32_t>(body.size())) {
    zeros = static_cast<size_t>(conversion.precision) - body.size();
  }
  std::string_view prefix;
  if (isSigned) prefix = SignPrefix(conversion, value.negative);
  if (isHex && value.amount != 0 && (conversion.alternate || conversion.letter == 'p')) {
    prefix = conversion.letter == 'X' ? "0X" : "0x";
  }
  const bool octalMark = base == 8 && conversion.alternate && zeros == 0;
  if (octalMark && (body.empty() || body[0] != '0')) zeros = 1;
  Pad(conversion, conversion.zeros && conversion.precision < 0, prefix, zeros, body, out);
}

// Digits of a finite, non-negative number for "f", "e" and "a"; the exponent's form is that of
// "%e".
char* WriteDigits(double value, char letter, int32_t precision, char* first, char* last) {
  const std::chars_format format = letter == 'f'   ? std::chars_format::fixed
                                   : letter == 'e' ? std::chars_format::scientific
                                   : letter == 'a' ? std::chars_format::hex
                                                   : std::chars_format::general;
  if (letter == 'a' && precision < 0) return std::to_chars(first, last, value, format).ptr;
  return std::to_chars(first, last, value, format, precision < 0 ? 6 : precision).ptr;
}

// "%#g" keeps its trailing zeros: it is "%e" or "%f", whichever the exponent asks for.
char* WriteFullGeneral(double value, int32_t precision, char* first, char* last) {
  const int32_t wanted = precision < 0 ? 6 : std::max(precision, 1);
  char* end = WriteDigits(value, 'e', wanted - 1, first, last);
  char* mark = std::find(first, end, 'e');
  int exponent = 0;
  std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, end, exponent);
  if (exponent < -4 || exponent >= wanted) return end;
  return WriteDigits(value, 'f', wanted - 1 - exponent, first, last);
}

// '#' promises a decimal point: after the digits, before an exponent.
char* EnsurePoint(char letter, char* first, char* end) {
  if (std::find(first, end, '.') != end) return end;
  char* const place = letter == 'a' ? std::find(first, end, 'p') : std::find(first, end, 'e');
  std::copy_backward(place, end, end + 1);
  *place = '.';
  return end + 1;
}

void RenderFloat(const Conversion& conversion, double value, FixedBuffer& out) {
  char letter = conversion.letter;
  const bool isUpper = letter >= 'A' && letter <= 'Z';
  if (isUpper) letter = static_cast<char>(letter - 'A' + 'a');
  const std::string_view sign = SignPrefix(conversion, std::signbit(value));
  if (!std::isfinite(value)) {
    const bool isNan = std::isnan(value);
    const std::string_view word = isNan ? (isUpper ? "NAN" : "nan") : (isUpper ? "INF" : "inf");
    Pad(conversion, false, sign, 0, word, out);
    return;
  }
  char buffer[kFloatCapacity];
  char* const last = buffer + sizeof(buffer) - 1;  // space for a point
  const double amount = std::fabs(value);
  char* end = letter == 'g' && conversion.alternate
                  ? WriteFullGeneral(amount, conversion.precision, buffer, last)
                  : WriteDigits(amount, letter, conversion.precision, buffer, last);
  if (conversion.alternate) end = EnsurePoint(letter, buffer, end);
  if (isUpper) ToUpper(buffer, end);

  char prefix[4];
  FixedBuffer prefixText(prefix, sizeof(prefix));
  prefixText.Append(sign);
  if (letter == 'a') prefixText.Append(isUpper ? "0X" : "0x");
  Pad(conversion, conversion.zeros, prefixText.View(), 0,
      {buffer, static_cast<size_t>(end - buffer)}, out);
}

void RenderPointer(const Conversion& conversion, const FormatArgument& argument, FixedBuffer& out) {
  if (argument.Unsigned() == 0 && argument.GetKind() == FormatArgument::Kind::kPointer) {
    Pad(conversion, false, "", 0, "(nil)", out);
  } else {
    FormatInteger(conversion, argument, out);
  }
}

// The default form with the width of "%s".
void RenderAsText(Conversion conversion, const FormatArgument& argument, FixedBuffer& out) {
  using Kind = FormatArgument::Kind;
  switch (argument.GetKind()) {
    case Kind::kBool:
      RenderText(conversion, argument.Unsigned() != 0 ? "true" : "false", out);
      return;
    case Kind::kChar: {
      const char character = static_cast<char>(argument.Unsigned());
      RenderText(conversion, {&character, 1}, out);
      return;
    }
    case Kind::kText:
      RenderText(conversion, argument.Text(), out);
      return;
    case Kind::kFloat:
      conversion.letter = 'g';
      RenderFloat(conversion, argument.Float(), out);
      return;
    case Kind::kPointer:
      conversion.letter = 'p';
      RenderPointer(conversion, argument, out);
      return;
    case Kind::kSigned:
    case Kind::kUnsigned:
      conversion.letter = 'd';
      FormatInteger(conversion, argument, out);
      return;
  }
}

double ToDouble(const FormatArgument& argument) {
  return argument.GetKind() == FormatArgument::Kind::kSigned
             ? static_cast<double>(argument.Signed())
             : RoundToNearest<double>(argument.Unsigned());
}

}  // namespace

bool Render(const Conversion& conversion, const FormatArgument& argument, FixedBuffer& out) {
  using Kind = FormatArgument::Kind;
  const char letter = conversion.letter;
  if (conversion.isPlain && RenderPlain(letter, argument, out)) return true;
  if (letter == 's') {
    RenderAsText(conversion, argument, out);
    return true;
  }
  switch (argument.GetKind()) {
    case Kind::kText:
      return false;
    case Kind::kFloat:
      if (kNoFloatLetters.Has(letter)) return false;
      if (kIntegerLetters.Has(letter)) {
        RenderAsText(conversion, argument, out);
      } else {
        RenderFloat(conversion, argument.Float(), out);
      }
      return true;
    default:
      break;
  }
  if (letter == 'c') {
    const char character = static_cast<char>(ToInteger(argument, false).amount);
    Pad(conversion, false, "", 0, {&character, 1}, out);
  } else if (letter == 'p') {
    RenderPointer(conversion, argument, out);
  } else if (kIntegerLetters.Has(letter)) {
    FormatInteger(conversion, argument, out);
  } else {
    RenderFloat(conversion, ToDouble(argument), out);
  }
  return true;
}

void RenderDefault(const FormatArgument& argument, FixedBuffer& out) {
  Render(Conversion{}, argument, out);
}

}  // namespace Kest
