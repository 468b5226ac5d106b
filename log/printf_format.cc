#include "log/printf_format.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "log/conversion.h"

namespace Kest {
namespace {

// Some of the types read below are one type on this system and two on another.
// NOLINTBEGIN(bugprone-branch-clone)
FormatArgument NextSigned(LengthModifier length, ArgumentList& arguments) {
  switch (length) {
    case LengthModifier::kChar:
      return static_cast<signed char>(va_arg(arguments.list, int));
    case LengthModifier::kShort:
      return static_cast<int16_t>(va_arg(arguments.list, int));
    case LengthModifier::kLong:
      return va_arg(arguments.list, long);
    case LengthModifier::kLongLong:
      return va_arg(arguments.list, long long);
    case LengthModifier::kMax:
      return va_arg(arguments.list, intmax_t);
    case LengthModifier::kSize:
    case LengthModifier::kDiff:
      return va_arg(arguments.list, ptrdiff_t);
    default:
      return va_arg(arguments.list, int);
  }
}

FormatArgument NextUnsigned(LengthModifier length, ArgumentList& arguments) {
  switch (length) {
    case LengthModifier::kChar:
      return static_cast<unsigned char>(va_arg(arguments.list, int));
    case LengthModifier::kShort:
      return static_cast<uint16_t>(va_arg(arguments.list, int));
    case LengthModifier::kLong:
      return va_arg(arguments.list, unsigned long);
    case LengthModifier::kLongLong:
      return va_arg(arguments.list, unsigned long long);
    case LengthModifier::kMax:
      return va_arg(arguments.list, uintmax_t);
    case LengthModifier::kSize:
    case LengthModifier::kDiff:
      return va_arg(arguments.list, size_t);
    default:
      return va_arg(arguments.list, unsigned);
  }
}

// NOLINTEND(bugprone-branch-clone)

// A text without a NUL within its precision is legal, so no more than that is looked at.
FormatArgument NextText(int32_t precision, ArgumentList& arguments) {
  const char* text = va_arg(arguments.list, const char*);
  if (text == nullptr || precision < 0) return text;
  return std::string_view(text, strnlen(text, static_cast<size_t>(precision)));
}

FormatArgument NextFloat(LengthModifier length, ArgumentList& arguments) {
  if (length == LengthModifier::kLongDouble) return va_arg(arguments.list, long double);
  return va_arg(arguments.list, double);
}

FormatArgument Next(const Conversion& conversion, ArgumentList& arguments) {
  switch (conversion.letter) {
    case 'd':
    case 'i':
      return NextSigned(conversion.length, arguments);
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      return NextUnsigned(conversion.length, arguments);
    case 'c':
      return static_cast<char>(va_arg(arguments.list, int));
    case 's':
      return NextText(conversion.precision, arguments);
    case 'p':
      return va_arg(arguments.list, const void*);
    default:
      return NextFloat(conversion.length, arguments);
  }
}

bool IsWide(const Conversion& conversion) {
  return conversion.length != LengthModifier::kNone &&
         (conversion.letter == 's' || conversion.letter == 'c');
}

// A string or decimal number without flags, width and precision, which are nearly all there is.
// Returns the size of the conversion; 0: it is something else, and nothing has been done.
size_t AppendPlain(std::string_view text, ArgumentList& arguments, FixedBuffer& out) {
  size_t position = 0;
  const LengthModifier length = ReadLength(text, &position);
  const char letter = position < text.size() ? text[position] : '\0';
  if (letter == 's' && length == LengthModifier::kNone) {
    out.Append(FormatArgument(va_arg(arguments.list, const char*)).Text());
  } else if (letter == 'd') {
    const int64_t value = NextSigned(length, arguments).Signed();
    if (value < 0) out.Append('-');
    out.AppendDecimal(value < 0 ? uint64_t{0} - static_cast<uint64_t>(value)
                                : static_cast<uint64_t>(value));
  } else if (letter == 'u') {
    out.AppendDecimal(NextUnsigned(length, arguments).Unsigned());
  } else {
    return 0;
  }
  return position + 1;
}

// The conversion at the start of `text`. False: formatting ends.
bool Convert(std::string_view text, ArgumentList& arguments, FixedBuffer& out, size_t* size) {
  *size = AppendPlain(text, arguments, out);
  if (*size != 0) return true;
  ConversionText read;
  if (!ReadConversion(text, &read) || IsWide(read.conversion)) return false;
  if (read.width.present) read.conversion.SetWidth(va_arg(arguments.list, int));
  if (read.precision.present) read.conversion.SetPrecision(va_arg(arguments.list, int));
  *size = read.size;
  return Render(read.conversion, Next(read.conversion, arguments), out);
}

}  // namespace

void AppendPrintf(FixedBuffer& out, const char* format, ArgumentList& arguments) {
  std::string_view rest(format);
  while (!rest.empty() && !out.IsFull()) {
    rest.remove_prefix(out.AppendUntil('%', rest));
    if (rest.empty()) break;
    rest.remove_prefix(1);
    size_t size = 1;
    if (rest.starts_with('%')) {
      out.Append('%');
    } else if (!Convert(rest, arguments, out, &size)) {
      break;
    }
    rest.remove_prefix(size);
  }
}

}  // namespace Kest
