#include "loot/model/quantity_expression.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/support/golden.h"

namespace Kest::Client::Loot {
namespace {

TEST(QuantityExpression, EvaluatesOrRefuses) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/quantities.txt", [](std::string_view text) {
    const std::optional<int32_t> value = EvaluateQuantity(text);
    return value ? std::to_string(*value) : "unreadable";
  }));
  EXPECT_EQ(EvaluateQuantity({"3\0004", 3}), std::nullopt);
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
