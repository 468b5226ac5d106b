#include <gtest/gtest.h>

#include "host/world/file/quantity_expression.h"
#include "host/world/input/document.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

// The value as JSON text, or the failure's message.
std::string Read(const Maybe<Document>& document) {
  return document ? WriteJson(document.GetValue().root()) : document.GetFailure().text;
}

TEST(WorldInput, YamlIsReadByTheCoreSchemaAndJsonByItsOwnRules) {
  const auto read = [](const std::string& text) { return Read(Document::FromYaml("t", text)); };
  EXPECT_TRUE(Testing::GoldenCases("tests/host/world_yaml.txt", read));
  EXPECT_EQ(read(std::string(1000000, '[')), "t:1:65: nesting is deeper than 64");
  const std::string deepest = std::string(64, '[') + std::string(64, ']');
  EXPECT_EQ(read(deepest), deepest);
}

TEST(WorldInput, ARequestIsStrictJson) {
  const auto read = [](const std::string& text) { return Read(Document::FromJson("t", text)); };
  EXPECT_TRUE(Testing::GoldenCases("tests/host/world_json.txt", read));
  EXPECT_EQ(read(std::string(1000000, '[')), "t: nesting is deeper than 64");
}

TEST(QuantityExpression, CalculatesAsTheServiceWritesIt) {
  const std::pair<const char*, int64_t> kCases[] = {
      {" 2 + 3 * 4 ", 14}, {"(2+3)*4", 20}, {"20-5-3", 12}, {"24/4/2", 3},
      {"7/2", 3},          {"((8))", 8},    {"2-5", -3},    {"9223372036854775807", INT64_MAX}};
  for (const auto& [text, value] : kCases) EXPECT_EQ(EvaluateQuantity(text), value) << text;
  for (const char* text :
       {"", "2 3", "2+", "+2", "(2", "2)", "()", "2(3)", "1/0", "1.5", "9223372036854775808",
        "9223372036854775807+1", "4294967296*4294967296", "(0-9223372036854775807-1)/(0-1)"}) {
    EXPECT_EQ(EvaluateQuantity(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace Kest::Host
