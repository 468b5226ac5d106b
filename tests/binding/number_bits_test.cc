#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include "base/number_string.h"
#include "binding/convert/assign_scalar.h"
#include "binding/json/json_float.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/classic_locale.h"
#include "tests/support/text_hash.h"

namespace Kest {
namespace {

// Draws decimal texts of every shape that a body may hold.
class DecimalTexts {
 public:
  std::string Next() {
    std::string text = Chance(4) ? "-" : "";
    text += Chance(3) ? "0" : Digits(1 + Below(Chance(8) ? 40 : 17));
    if (!Chance(4))
      text += "." + std::string(Chance(3) ? Below(24) : 0, '0') + Digits(1 + Below(17));
    if (Chance(2)) text += (Chance(2) ? "e" : "E-") + std::to_string(Below(Chance(4) ? 330 : 25));
    return text;
  }
  uint64_t Bits() { return draw_(); }

 private:
  uint64_t Below(uint64_t bound) { return draw_() % bound; }
  bool Chance(uint64_t oneIn) { return Below(oneIn) == 0; }
  std::string Digits(uint64_t count) {
    std::string digits(1, static_cast<char>('1' + Below(9)));
    while (digits.size() < count) digits += static_cast<char>('0' + Below(10));
    return digits;
  }

  std::mt19937_64 draw_{301};
};

template <typename T>
T Assigned(const BindingProperty& input) {
  T target = 0;
  ConversionContext context(Samples::Registry());
  AssignScalar(context, "p", input, &target);
  return target;
}

// The compiler's target must not show in a number: units that calculate with more bits than a
// double has round twice, and the x87 unit rounds to as few bits as the process has set. Some
// graphics libraries set 24, so that is what the tests run with. The pinned hashes are those of
// every build.
class NumberBits : public ::testing::Test {
#if defined(__i386__)
 protected:
  NumberBits() {
    asm volatile("fnstcw %0" : "=m"(former_));
    Set(former_ & ~0x300);
  }
  ~NumberBits() override {
    Set(former_);
  }

 private:
  static void Set(int control) {
    const auto word = static_cast<uint16_t>(control);
    asm volatile("fldcw %0" : : "m"(word));
  }
  uint16_t former_ = 0;
#endif
};

TEST_F(NumberBits, AMillionTextsBecomeTheSameDoublesInEveryBuild) {
  DecimalTexts texts;
  Testing::TextHash all;
  for (int i = 0; i < 1'000'000; ++i) {
    const std::string text = texts.Next();
    double value = 0;
    ASSERT_EQ(ParseDecimal(text, &value), text.size()) << text;
#if defined(__GLIBC__)  // whose reading is exact
    const Testing::ClassicLocale classic;
    ASSERT_EQ(std::bit_cast<uint64_t>(value),
              std::bit_cast<uint64_t>(std::strtod(text.c_str(), nullptr)))
        << text;
#endif
    all.Add(std::bit_cast<uint64_t>(value));
  }
  EXPECT_EQ(all.Value(), 17066777788385167062u);
}

TEST_F(NumberBits, AMillionNumbersBecomeTheSameTextsInEveryBuildAndReadBack) {
  DecimalTexts numbers;
  Testing::TextHash all;
  for (int i = 0; i < 1'000'000; ++i) {
    const uint64_t bits = numbers.Bits();
    const auto value = std::bit_cast<double>(bits);
    if (std::isfinite(value)) {
      char json[kMaxJsonFloat];
      const std::string_view text(json, WriteJsonFloat(value, json));
      double back = 0;
      ASSERT_EQ(ParseDecimal(text, &back), text.size()) << text;
      ASSERT_EQ(std::bit_cast<uint64_t>(back), bits) << text;
      all.Add(text);
      all.Add(RoundTripString(value));
    }
    int64_t whole = 0;
    const std::string text = std::to_string(static_cast<int64_t>(bits) >> (bits & 63));
    ASSERT_EQ(ParseIntegerText(text, &whole), NumberParseStatus::kOk) << text;
    all.Add(static_cast<uint64_t>(whole));
    for (const auto& input : {BindingProperty::FromUnsigned(bits),
                              BindingProperty::FromSigned(static_cast<int64_t>(bits))}) {
      all.Add(std::bit_cast<uint64_t>(Assigned<double>(input)));
      all.Add(uint64_t{std::bit_cast<uint32_t>(Assigned<float>(input))});
    }
  }
  EXPECT_EQ(all.Value(), 3981707935739101553u);
}

}  // namespace
}  // namespace Kest
