// Templates and arguments. The first line is a template for the positional formatter and for log
// lines, which must be truncated at their bounds. The second names one conversion, for example
// "-08.3x 255": it must print what the C library of Linux prints; others have faults of their own.
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "log/positional_format.h"
#include "log/printf_format.h"

#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace Kest::Fuzz {
namespace {

constexpr size_t kMaxText = 4096;
constexpr int kMaxField = 300;
// A conversion reads at most three arguments, and takes five bytes then.
constexpr size_t kMaxLogTemplate = 60;

std::string Logged(const char* format, ...) {
  char buffer[kMaxText];
  FixedBuffer out(buffer, sizeof(buffer));
  ArgumentList arguments;
  va_start(arguments.list, format);
  AppendPrintf(out, format, arguments);
  va_end(arguments.list);
  return std::string(out.View());
}

[[maybe_unused]] std::string Printed(const char* format, ...) {
  char buffer[kMaxText + 1];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof(buffer), format, arguments);
  va_end(arguments);
  return buffer;
}

void CheckTemplate(std::string_view text) {
  const std::string first = Format(text, "text", 17, -2.5, 'c', true, nullptr, UINT64_MAX);
  Require(first.size() <= kMaxText, "a string is truncated", text);
  RequireSame(first, Format(text, "text", 17, -2.5, 'c', true, nullptr, UINT64_MAX), "repeated");
  const std::string longest(kMaxText + 1, 'x');
  const std::string full = Format(text, longest, longest);
  Require(full.size() <= kMaxText, "a string is truncated", text);
  if (text.find('%') == std::string_view::npos) RequireSame(text.substr(0, kMaxText), full, "kept");

  // Enough arguments for any reading of the template, none of which can do harm: zeros are numbers
  // of any kind and null strings. The first floating-point ones travel apart from the others.
  const std::string format(text.substr(0, std::min(text.find('\0'), kMaxLogTemplate)));
  constexpr uint64_t kZero = 0;
  Require(Logged(format.c_str(), 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, kZero, kZero, kZero, kZero,
                 kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero,
                 kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero,
                 kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero,
                 kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero, kZero)
                  .size() <= kMaxText,
          "a line is truncated", format);
}

// "-08.3x 255" in its parts.
struct Sample {
  std::string field;  // flags, width and precision
  char letter = 0;
  std::string argument;
};

// False: it is no conversion that the C library knows as well.
bool Read(std::string_view text, Sample* sample) {
  const size_t flags = std::min(text.find_first_not_of("-+ #0"), text.size());
  if (flags > 5) return false;
  sample->field = text.substr(0, flags);
  text.remove_prefix(flags);
  for (const std::string_view start : {"", "."}) {
    if (!text.starts_with(start)) continue;
    const size_t end = std::min(text.find_first_not_of("0123456789", start.size()), text.size());
    const std::string field(text.substr(0, end));
    if (std::atoi(field.c_str() + start.size()) > kMaxField || field.size() > 4) return false;
    sample->field += field;
    text.remove_prefix(end);
  }
  constexpr std::string_view kLetters = "diouxXcsfFeEgGa";
  if (text.empty() || kLetters.find(text[0]) == std::string_view::npos) return false;
  sample->letter = text[0];
  text.remove_prefix(1);
  sample->argument = text.substr(0, text.find('\0'));
  return true;
}

template <typename T>
void CheckSame(const Sample& sample, const char* modifier, T value) {
  const std::string format = "%" + sample.field + modifier + sample.letter;
#if defined(__GLIBC__)
  const std::string expected = Printed(format.c_str(), value).substr(0, kMaxText);
#else
  const std::string expected = Logged(format.c_str(), value);
#endif
  // A width of 1 is the place of the one argument.
  const bool isPlace = std::atoi(sample.field.c_str()) == 1 && sample.field.front() == '1';
  if (!isPlace) RequireSame(expected, Format(format, value), format);
  RequireSame(expected, Format("%1$" + format.substr(1), value), format);
  RequireSame(expected, Logged(format.c_str(), value), format);
}

void CheckPrinted(const Sample& sample) {
  const char* const text = sample.argument.c_str();
  const bool hasWordFlags = sample.field.find_first_of("+ #0") != std::string::npos;
  switch (sample.letter) {
    case 'd':
    case 'i':
      CheckSame(sample, "ll", std::strtoll(text, nullptr, 10));
      return CheckSame(sample, "", static_cast<int>(std::strtoll(text, nullptr, 10)));
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      CheckSame(sample, "ll", std::strtoull(text, nullptr, 10));
      return CheckSame(sample, "", static_cast<unsigned>(std::strtoull(text, nullptr, 10)));
    case 'c':
    case 's':
      // Flags for numbers have no meaning in C with these.
      if (hasWordFlags) return;
      if (sample.letter == 's') return CheckSame(sample, "", text);
      if (sample.field.find('.') == std::string::npos && text[0] != '\0') {
        CheckSame(sample, "", text[0]);
      }
      return;
    default:
      const double value = std::strtod(text, nullptr);
      // How C writes subnormal numbers in hexadecimal is open.
      if (sample.letter != 'a' || std::isnormal(value)) CheckSame(sample, "", value);
  }
}

}  // namespace

void CheckFormatter(std::string_view input) {
  CheckTemplate(TakeUntil('\n', &input));
  Sample sample;
  if (Read(input, &sample)) CheckPrinted(sample);
}

}  // namespace Kest::Fuzz
