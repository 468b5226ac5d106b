#include "loot/model/quantity_expression.h"

#include <gtest/gtest.h>

#include <string>

namespace Kest::Client::Loot {
namespace {

constexpr std::optional<int32_t> kUnreadable;

TEST(QuantityExpression, ReckonsOrRefuses) {
  const struct {
    const char* why;
    std::string_view text;
    std::optional<int32_t> value;
  } kCases[] = {
      {"whole number", "7", 7},
      {"blanks aside", " \t7 ", 7},
      {"product before sum", "2+3*4", 14},
      {"left to right", "20-5-3", 12},
      {"quotients left to right", "100/5/2", 10},
      {"quotient cut toward zero", "-7/2", -3},
      {"parentheses", "(2+3)*(4-1)", 15},
      {"nested", "((((5))))", 5},
      {"sign before a parenthesis", "-(2+3)", -5},
      {"sign after an operator", "2*-3", -6},
      {"64 bits in between", "4000000000*3/6000", 2000000},
      {"the low 32 bits of the result", "4294967296+5", 5},
      {"beyond int32 comes out negative", "2147483648", INT32_MIN},
      {"empty", "", kUnreadable},
      {"blank", "  ", kUnreadable},
      {"number beyond 64 bits", "9223372036854775808", kUnreadable},
      {"sum beyond 64 bits", "9223372036854775807+1", kUnreadable},
      {"quotient beyond 64 bits", "(-9223372036854775807-1)/-1", kUnreadable},
      {"division by zero", "4/(2-2)", kUnreadable},
      {"fraction", "1.5", kUnreadable},
      {"word", "random(3)", kUnreadable},
      {"two numbers", "1 2", kUnreadable},
      {"operand missing", "3+", kUnreadable},
      {"operand missing in front", "*3", kUnreadable},
      {"parenthesis left open", "(3", kUnreadable},
      {"parenthesis never opened", "3)", kUnreadable},
      {"nothing between parentheses", "()", kUnreadable},
      {"a parenthesis is no operand's neighbour", "2(3)", kUnreadable},
      {"bytes behind a zero byte count", std::string_view("3\0004", 3), kUnreadable},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(EvaluateQuantity(c.text), c.value);
  }
}

TEST(QuantityExpression, DeepNestingTakesNoStack) {
  constexpr size_t kDepth = 2'000'000;
  std::string nested(kDepth, '(');
  nested.append("9").append(kDepth, ')');
  EXPECT_EQ(EvaluateQuantity(nested), 9);
  std::string negated(kDepth, '-');
  EXPECT_EQ(EvaluateQuantity(negated.append("9")), 9);
}

}  // namespace
}  // namespace Kest::Client::Loot
