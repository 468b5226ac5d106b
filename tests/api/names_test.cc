#include "api/accept.h"
#include "api/argument_value.h"
#include "api/http_names.h"
#include "api/query_string.h"
#include "api/response.h"
#include "tests/api/sample_api.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

using Sample::Summary;

TEST(HttpNames, HaveGapsOutsideTheirTables) {
  EXPECT_EQ(MethodName(HttpMethod::kDelete), "DELETE");
  EXPECT_EQ(MethodName(static_cast<HttpMethod>(7)), "PUT");
  for (const int32_t id : {-1, 0, 8}) EXPECT_EQ(MethodName(static_cast<HttpMethod>(id)), "");
  EXPECT_EQ(ParseMethod("POST"), HttpMethod::kPost);
  for (const char* name : {"", "get", "GETS"}) EXPECT_EQ(ParseMethod(name), HttpMethod::kNone);
  EXPECT_EQ(StatusText(207), "207 Multi-Status");
  EXPECT_EQ(StatusText(507), "Insufficient Storage");
  for (const int32_t status : {-1, 306, 418, 421, 506, 508}) EXPECT_EQ(StatusText(status), "");
}

TEST(FailureResponse, EmptyTextsAndOddStatusesGetTheirReading) {
  EXPECT_TRUE(Testing::GoldenCases("tests/api/failures.txt", [](const std::string& failure) {
    const size_t space = failure.find(' ');
    return Summary(FailureResponse({failure.substr(space + 1), std::stoi(failure)}));
  }));
}

TEST(QueryText, SplitsFirstAndDecodesOnce) {
  EXPECT_TRUE(Testing::GoldenCases("tests/api/queries.txt", [](const std::string& query) {
    std::string pairs;
    std::string_view rest = query;
    while (const auto pair = TakeQueryPair(&rest)) {
      pairs += "[" + pair->name + "]=[" + pair->value + "]";
    }
    return pairs;
  }));
  EXPECT_EQ(PercentDecode("a+b%2Bc", PlusSign::kIsPlus), "a+b+c");
  EXPECT_EQ(SplitUrl("/a?b?c").query, "b?c");
  EXPECT_EQ(SplitUrl("/a").path, "/a");
}

TEST(Accept, MessagePackMustBeNamedAndPreferred) {
  EXPECT_TRUE(Testing::GoldenCases("tests/api/accept.txt", [](const std::string& accept) {
    return ChooseResultFormat(accept) == ResultFormat::kMessagePack ? "MessagePack" : "JSON";
  }));
}

TEST(ValueFormat, ContentTypeDecidesBeforeTheFirstCharacters) {
  using enum ValueFormat;
  EXPECT_TRUE(Testing::GoldenCases("tests/api/value_formats.txt", [](const std::string& value) {
    constexpr const char* kNames[] = {"string", "bytes", "JSON", "MessagePack", "YAML"};
    const size_t target = value.find('\n') + 1;
    const size_t text = value.find('\n', target) + 1;
    const std::string received = value.substr(text);
    std::string_view read = received;
    const auto format = ChooseValueFormat(value.substr(0, target - 1),
                                          value.substr(target).starts_with("structured"), &read);
    return kNames[static_cast<size_t>(format)] +
           std::string(read == received ? "" : " " + std::string(read));
  }));
  EXPECT_EQ(ChooseBodyFormat("application/vnd.api+json"), kJson);
  EXPECT_EQ(ChooseBodyFormat("application/x-yaml"), kYaml);
  EXPECT_EQ(ChooseBodyFormat("text/x-yaml"), std::nullopt);
  EXPECT_EQ(ChooseBodyFormat("application/octet-stream"), std::nullopt);
}

}  // namespace
}  // namespace Kest
