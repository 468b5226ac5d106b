#include "host/http/request_guard.h"

#include <gtest/gtest.h>

#include <sstream>

#include "host/http/http_responses.h"
#include "host/json/json_text.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

TEST(RequestGuard, LetsInThisMachineOnly) {
  const RequestGuard guard("192.0.2.7", {"https://shop.example:3000"});
  EXPECT_TRUE(Testing::GoldenCases("tests/host/request_guard.txt", [&](const std::string& words) {
    HttpRequest request;
    std::istringstream(words) >> request.method >> request.host >> request.origin;
    const auto response = guard.Refuse(request);
    return std::to_string(response ? response->status : 0) +
           (guard.Allows(request.origin) ? " readable" : "");
  }));
}

TEST(ReadOrigin, IsWhatABrowserSendsOrNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://shop.test:3000", "https://shop.test:3000"},
      {"HTTPS://Shop.test/", "https://shop.test"},
      {"https://shop.test:443", "https://shop.test"},
      {"http://shop.test:80/", "http://shop.test"},
      {"http://shop.test:443", "http://shop.test:443"},
      {"http://[2001:DB8::1]:80", "http://[2001:db8::1]"},
      {"app://shop", "app://shop"},
      {"foo", ""},
      {"shop.test:3000", ""},
      {"https://", ""},
      {"https:///", ""},
      {"https://shop.test/cart", ""},
      {"https://shop.test//", ""},
      {"https://shop.test:x", ""},
      {"https://shop.test:", ""},
      {"https://*.test", ""},
      {"https://a@shop.test", ""},
      {"https://\xC3\xA4.test", ""}};
  for (const auto& [text, origin] : cases) EXPECT_EQ(ReadOrigin(text).value_or(""), origin) << text;
}

TEST(ProblemResponse, IsJsonForAnyDetail) {
  const HttpResponse response = ProblemResponse(404, "no \"x\xC3\"\n");
  EXPECT_EQ(response.body,
            "{\"status\":404,\"title\":\"Not Found\",\"detail\":\"no \\\"x\xEF\xBF\xBD\\\"\\n\"}");
  EXPECT_EQ(response.contentType, "application/problem+json");
}

TEST(IsJson, TakesOneCompleteDocumentAndNoDeepStack) {
  for (const char* text : {R"({"a":[1,null,"x"]})", "-1.5e300"}) EXPECT_TRUE(IsJson(text)) << text;
  for (const char* text : {"", "1 2", R"({"a":)", "\"\xff\""}) EXPECT_FALSE(IsJson(text)) << text;
  EXPECT_FALSE(IsJson(std::string("1\0 2", 4))) << "something after a NUL";
  EXPECT_FALSE(IsJson("\xEF\xBB\xBF[]")) << "a byte-order mark";
  EXPECT_TRUE(IsJson(std::string(200'000, '[') + std::string(200'000, ']')));
}

}  // namespace
}  // namespace Kest::Host
