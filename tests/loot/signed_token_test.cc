// The token decoder and its JSON reader.
#include "loot/token/signed_token.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <typeinfo>

#include "binding/json/json_adapter.h"
#include "loot/token/json_reader.h"
#include "tests/loot/token_text.h"
#include "tests/support/golden.h"
#include "tests/support/small_stack.h"

namespace Kest::Client::Loot {
namespace {

using json::Reader;

std::string Json(const BindingProperty& tree) {
  ConversionContext context;
  std::string text;
  WriteJson(context, tree, &text);
  return text;
}

// "Scan ..." or "Parse ..." and the text of the exception, or the value.
std::string Outcome(std::string_view text) {
  try {
    return Json(Reader::Read(text));
  } catch (const Reader::ScanException& error) {
    return std::string("Scan ") + error.what();
  } catch (const Reader::ParseException& error) {
    return std::string("Parse ") + error.what();
  }
}

TEST(TokenJson, ReadsOneValueOrSaysWhatIsWrong) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/token_json.txt", Outcome));
  EXPECT_EQ(Outcome(std::string_view("\"a\0b\"", 5)), R"("a\u0000b")");
}

TEST(TokenJson, NestingNeedsNoStack) {
  constexpr size_t kDepth = 1'000'000;
  Testing::RunOnSmallStack([] {
    const std::string open(kDepth, '[');
    EXPECT_EQ(Reader::Read(open + std::string(kDepth, ']')).Size(), 1u);
    EXPECT_EQ(Outcome(open), "Parse Unexpected End of token stream");
  });
}

TEST(Base64, DecodesBothAlphabetsWithAndWithoutPadding) {
  std::mt19937 random(301);
  for (size_t size = 0; size < 70; ++size) {
    std::string bytes;
    for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(random());
    const std::string text = EncodeBase64(bytes);
    EXPECT_EQ(DecodeBase64(text), bytes);
    EXPECT_EQ(DecodeBase64(text.substr(0, text.find('='))), bytes);
    EXPECT_EQ(DecodeBase64(EncodeBase64(bytes, "-_")), bytes);
  }
  EXPECT_EQ(DecodeBase64("YWJj!YWJj"), "abc") << "it ends at a foreign character";
}

TEST(SignedToken, EachPartIsReadOrReplacedAlone) {
  EXPECT_TRUE(Testing::GoldenCases("tests/loot/cases/signed_tokens.txt", [](auto token) {
    const SignedToken decoded = DecodeToken(token);
    return Json(decoded.header) + " " + Json(decoded.payload) + " " + decoded.signature;
  }));
}

}  // namespace
}  // namespace Kest::Client::Loot
