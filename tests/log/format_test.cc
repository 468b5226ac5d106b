#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <locale>
#include <sstream>

#include "log/positional_format.h"
#include "log/printf_attribute.h"
#include "log/printf_format.h"
#include "tests/support/classic_locale.h"
#include "tests/support/golden.h"
#include "tests/support/text_hash.h"

namespace Kest {
namespace {

using namespace std::string_literals;

// printf is the reference for what a conversion prints.
[[maybe_unused]] KEST_PRINTF(1, 2) std::string Printed(const char* format, ...) {
  const Testing::ClassicLocale classic;
  char buffer[8192];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof(buffer), format, arguments);
  va_end(arguments);
  return buffer;
}

KEST_PRINTF(1, 2) std::string Logged(const char* format, ...) {
  char buffer[4095];
  FixedBuffer text(buffer, sizeof(buffer));
  ArgumentList arguments;
  va_start(arguments.list, format);
  AppendPrintf(text, format, arguments);
  va_end(arguments.list);
  return std::string(text.View());
}

std::string Address(const void* memory) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "0x" << std::hex << reinterpret_cast<uintptr_t>(memory);
  return text.str();
}

std::string Repeated(size_t times, char character) {
  std::string text;
  text.resize(times, character);
  return text;
}

enum class Colour : int8_t { kGreen = 65 };

TEST(Format, DefaultForms) {
  int object = 0;
  EXPECT_EQ(Format("%1 %2 %3 %4", "a", "b"s, std::string_view("c"), 'd'), "a b c d");
  EXPECT_EQ(Format("%1 %2 %3 %4", int8_t{-7}, uint8_t{200}, INT64_MIN, UINT64_MAX),
            "-7 200 -9223372036854775808 18446744073709551615");
  EXPECT_EQ(Format("%1 %2 %3", true, false, Colour::kGreen), "true false 65");
  EXPECT_EQ(Format("%1 %2 %3", 1.5f, 1e20, 0.1), "1.5 1e+20 0.1");
  EXPECT_EQ(Format("%1", &object), Address(&object));
  EXPECT_EQ(Format("%1 %2", nullptr, static_cast<const char*>(nullptr)), "(nil) (null)");
  EXPECT_EQ(Format("[%1]", "a\0b"s), "[a\0b]"s);
}

TEST(Format, PositionsAndSequence) {
  EXPECT_TRUE(Testing::GoldenCases("tests/log/positions.txt", [](const std::string& pattern) {
    return Format(pattern, 1, 2, 3);
  }));
  EXPECT_EQ(Format("%1 left"), "");
  EXPECT_EQ(Format("%1$*2$d|", 5, -4), "5   |");
  EXPECT_EQ(Format("%*s|", uint64_t{3}, "a"), "  a|");
  EXPECT_EQ(Format("a%*s|", "3", "a"), "a");
  EXPECT_EQ(Format("a%.*s|", 1.0, "a"), "a");
}

TEST(Format, CapsAndClamps) {
  EXPECT_EQ(Format("[%" + Repeated(58, '0') + "1d]", 7), "[7]");
  EXPECT_EQ(Format("[%" + Repeated(59, '0') + "1d]", 7), "[");
  EXPECT_EQ(Format("[%1$" + Repeated(57, '0') + "1d]", 7), "[");
  EXPECT_EQ(Format("%1", Repeated(5000, 'x')), Repeated(4096, 'x'));
  EXPECT_EQ(Format(Repeated(4095, 'x').append("%1"), "\xc3\xa9").size(), 4096u);
  EXPECT_EQ(Format("%2147483646d", 1), Repeated(4096, ' '));
  EXPECT_EQ(Format("%.2147483000f", 1.0), Repeated(4096, '0').replace(0, 2, "1."));
  EXPECT_EQ(Format("%*d|", INT64_MIN, 1), Repeated(4096, ' ').replace(0, 1, "1"));
  EXPECT_EQ(Format("%.100000000d", 1), Repeated(4095, '0').append("1"));
  EXPECT_EQ(Format("%#.4096f", DBL_MAX).size(), 4096u);
}

TEST(Format, TypesDecideNotLetters) {
  EXPECT_EQ(Format("%s %s %s", true, 12, 0.5), "true 12 0.5");
  EXPECT_EQ(Format("%5s|%-5s|%.1s", true, 'c', "text"), " true|c    |t");
  EXPECT_EQ(Format("%x %u %hhd", int8_t{-1}, int16_t{-1}, 100000), "ff 65535 100000");
  EXPECT_EQ(Format("%d %ld", 4000000000u, UINT64_MAX), "4000000000 18446744073709551615");
  EXPECT_EQ(Format("%d %d %c", true, 'A', 65), "1 65 A");
  EXPECT_EQ(Format("%.2f %d", 3, 2.5), "3.00 2.5");
  for (const char* pattern : {"a%d b", "a%x b", "a%f b", "a%c b", "a%p b"}) {
    EXPECT_EQ(Format(pattern, "text"), "a") << pattern;
  }
}

// Every flag, width, precision and letter, on numbers that are hard to print.
// The C library of Linux is the reference; the others have faults of their own.
void ExpectAsPrinted([[maybe_unused]] const std::string& text,
                     [[maybe_unused]] const std::string& format, [[maybe_unused]] auto value) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#if defined(__GLIBC__)
  ASSERT_EQ(text, Printed(format.c_str(), value)) << format;
#endif
#pragma GCC diagnostic pop
}

TEST(Conversion, PrintsWhatPrintfPrintsAndTheSameEverywhere) {
  Testing::TextHash all;

  const int64_t kWholes[] = {0, 1, -1, 42, -12345, INT64_MAX, INT64_MIN};
  const double kFloats[] = {0.0,      -0.0, 0.5,     1.0,     123456789.0, 1e-5,   1e-4,
                            99999.95, 1e15, 9.5e-10, DBL_MAX, DBL_MIN,     -2.5,   INFINITY,
                            0.1,      1e6,  5e-324,  999999,  1e100,       100000, 1234.5};
  const char* const kFields[] = {"", "2", "12", ".", ".0", ".1", ".7", "20.3", "9.12"};
  for (int flags = 0; flags < 32; ++flags) {
    std::string head = "%";
    for (int bit = 0; bit < 5; ++bit) {
      if ((flags >> bit & 1) != 0) head += "-+ #0"[bit];
    }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    for (const char* field : kFields) {
      for (const char letter : std::string("diouxX")) {
        const std::string format = head + field + "ll" + letter;
        for (const int64_t value : kWholes) {
          const long long number = value;
          const std::string text = Format(format, value);
          ASSERT_EQ(Logged(format.c_str(), number), text) << format;
          ExpectAsPrinted(text, format, number);
          all.Add(text);
        }
      }
      for (const char letter : std::string("fFeEgG")) {
        const std::string format = head + field + letter;
        for (const double value : kFloats) {
          const std::string text = Format(format, value);
          ExpectAsPrinted(text, format, value);
          all.Add(text);
        }
      }
      const std::string format = head + field + "a";
      ExpectAsPrinted(Format(format, 1.0), format, 1.0);
      all.Add(Format(format, 1.0));
    }
#pragma GCC diagnostic pop
  }
  EXPECT_EQ(all.Value(), 8268473449089021881u);
}

// Not every C library prints the sign of what is no number.
TEST(Conversion, NoNumberKeepsItsSign) {
  EXPECT_EQ(Format("%f|%G|%+e|%07.1f|%-6g|", -NAN, -NAN, NAN, -NAN, NAN),
            "-nan|-NAN|+nan|   -nan|nan   |");
}

TEST(LogMessage, ReadsEachArgumentByItsLength) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"  // what does not fit is what is tested
  EXPECT_EQ(Logged("%hhu/%hhd/%hu/%hd", 506, 250, 65543, 65535), "250/-6/7/-1");
#pragma GCC diagnostic pop
  EXPECT_EQ(Logged("%ld %zu %td %jd %c", -5L, size_t{6}, ptrdiff_t{-7}, intmax_t{8}, 'c'),
            "-5 6 -7 8 c");
  EXPECT_EQ(Logged("%.1f %.1Lf %s", 1.25, 2.5L, "end"), "1.2 2.5 end");
  EXPECT_EQ(Logged("%*d|%-*d|%.*f%%|%.*f", 4, 1, 4, 2, 1, 0.25, -1, 0.5),
            "   1|2   |0.2%|0.500000");
  const char unterminated[] = {'a', 'b', 'c'};
  EXPECT_EQ(Logged("%.3s|%.*s", unterminated, 2, unterminated), "abc|ab");
  EXPECT_EQ(Logged("%x %p", -1, static_cast<void*>(nullptr)), "ffffffff (nil)");
  EXPECT_EQ(Logged("%s", Repeated(5000, 'x').c_str()), Repeated(4095, 'x'));
  EXPECT_EQ(Logged("%5000d", 1), Repeated(4095, ' '));
}

TEST(FormatNamed, ReplacesInOnePass) {
  EXPECT_TRUE(Testing::GoldenCases("tests/log/named_fields.txt", [](const std::string& pattern) {
    return FormatNamed(pattern, {{"method", "GET"}, {"url", "{method}"}, {"error", "%1"}});
  }));
  EXPECT_EQ(FormatNamed("{x}", {{"x", Repeated(9000, 'x')}}).size(), 9000u);
}

}  // namespace
}  // namespace Kest
