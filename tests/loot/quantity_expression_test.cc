#include "loot/model/quantity_expression.h"

#include <gtest/gtest.h>

#include <string>

namespace Kest::Client::Loot {
namespace {

TEST(QuantityExpression, ReckonsOrRefuses) {
  const std::pair<std::string_view, int32_t> kReadable[] = {
      {" \t7 ", 7},        {"2+3*4", 14},
      {"20-5-3", 12},      {"100/5/2", 10},
      {"-7/2", -3},        {"(2+3)*(4-1)", 15},
      {"((((5))))", 5},    {"-(2+3)", -5},
      {"2*-3", -6},        {"4000000000*3/6000", 2000000},
      {"4294967296+5", 5}, {"2147483648", INT32_MIN}};
  for (const auto& [text, value] : kReadable) EXPECT_EQ(EvaluateQuantity(text), value) << text;
  constexpr std::string_view kUnreadable[] = {"",
                                              "  ",
                                              "9223372036854775808",
                                              "9223372036854775807+1",
                                              "(-9223372036854775807-1)/-1",
                                              "4/(2-2)",
                                              "1.5",
                                              "random(3)",
                                              "1 2",
                                              "3+",
                                              "*3",
                                              "(3",
                                              "3)",
                                              "()",
                                              "2(3)",
                                              {"3\0004", 3}};
  for (const auto text : kUnreadable) EXPECT_EQ(EvaluateQuantity(text), std::nullopt) << text;
}

TEST(QuantityExpression, DeepNestingTakesNoStack) {
  constexpr size_t kDepth = 2'000'000;
  std::string nested(kDepth, '(');
  nested.append("9").append(kDepth, ')');
  EXPECT_EQ(EvaluateQuantity(nested), 9);
  EXPECT_EQ(EvaluateQuantity(std::string(kDepth, '-').append("9")), 9);
}

}  // namespace
}  // namespace Kest::Client::Loot
