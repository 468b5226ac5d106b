#include "api/accept.h"
#include "api/argument_value.h"
#include "api/http_names.h"
#include "api/query_string.h"
#include "api/response.h"
#include "tests/support/cases.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

using Testing::ExpectEach;

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
  ExpectEach<Failure>({{"no text", {"", 500}, "500 Internal server error"},
                       {"its own text", {"", 404}, "404 Not found"},
                       {"a status without one", {"", 501}, "500 Internal server error"},
                       {"any failure with a text", {"Later", 501}, "501 Later"},
                       {"a success is no failure", {"Done", 200}, "500 Done"},
                       {"no status", {"", 0}, "500 Internal server error"}},
                      [](const Failure& failure) {
                        const Response response = FailureResponse(failure);
                        return std::to_string(response.status) + " " + response.message;
                      });
}

TEST(QueryText, SplitsFirstAndDecodesOnce) {
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  ExpectEach<std::string, Pairs>(
      {{"nothing", "", {}},
       {"empty pieces are left out", "&&a=1&&b=2&", {{"a", "1"}, {"b", "2"}}},
       {"first = splits", "a=b=c", {{"a", "b=c"}}},
       {"no =, no value, no name", "a&b=&=c", {{"a", ""}, {"b", ""}, {"", "c"}}},
       {"decoded after splitting", "a%3D%26=%3d+%2B", {{"a=&", "= +"}}},
       {"once", "a=%2541", {{"a", "%41"}}},
       {"broken escapes stay", "%=%4&%zz=%4g%", {{"%", "%4"}, {"%zz", "%4g%"}}},
       {"any byte", "a=%00%ff", {{"a", std::string("\0\xff", 2)}}}},
      [](std::string_view rest) {
        Pairs pairs;
        while (const auto pair = TakeQueryPair(&rest)) pairs.emplace_back(pair->name, pair->value);
        return pairs;
      });
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
  const struct {
    const char *why, *contentType, *text;
    bool structured;
    ValueFormat format;
  } kCases[] = {
      {"plain", "", "{}", false, kString},
      {"list after spaces", "", " \t\r\n[", true, kJson},
      {"other whitespace is text", "", "\v[", true, kString},
      {"documents begin with hyphens", "", " ---\na: 1", true, kYaml},
      {"first MessagePack map", "", "\x80", true, kMessagePack},
      {"MessagePack text", "", "\xA1", true, kString},
      {"long MessagePack list", "", "\xDC", true, kMessagePack},
      {"after the long map", "", "\xE0", true, kString},
      {"no spaces before MessagePack", "", " \x80", true, kString},
      {"type wins over looks", "application/x-msgpack-ext", "{}", true, kMessagePack},
      {"case and parameters are ignored", "Application/JSON; charset=utf-8", "1", false, kJson},
      {"another type is not sniffed", "text/plain", "[]", true, kString},
      {"YAML value type", "text/x-yaml", "a", false, kYaml},
      {"YAML body type is none of a value", "application/x-yaml", "a", true, kString},
      {"bytes", "application/octet-stream", "[]", true, kBytes},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(ChooseValueFormat(c.contentType, c.text, c.structured), c.format) << c.why;
  }
  EXPECT_EQ(ChooseBodyFormat("application/vnd.api+json"), kJson);
  EXPECT_EQ(ChooseBodyFormat("application/x-yaml"), kYaml);
  EXPECT_EQ(ChooseBodyFormat("text/x-yaml"), std::nullopt);
  EXPECT_EQ(ChooseBodyFormat("application/octet-stream"), std::nullopt);
}

}  // namespace
}  // namespace Kest
