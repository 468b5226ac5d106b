#include "host/http/request_guard.h"

#include <gtest/gtest.h>

#include "host/http/http_responses.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

TEST(RequestGuard, LetsInThisMachineOnly) {
  const struct {
    const char *why, *method, *host, *origin;
    int status;  // 0: let in
  } kCases[] = {
      {"loopback address", "GET", "127.0.0.1:8510", "", 0},
      {"names ignore case", "GET", "LocalHost:1", "", 0},
      {"version 6 loopback", "GET", "[::1]", "", 0},
      {"the address it listens on", "GET", "192.0.2.7:80", "", 0},
      {"no name at all", "GET", "", "", 400},
      {"a name made to resolve to loopback", "GET", "attacker.example:8510", "", 403},
      {"begins like a loopback name", "GET", "127.0.0.1.example", "", 403},
      {"begins with a user name", "GET", "localhost@attacker.example", "", 403},
      {"what follows the colon is no port", "GET", "localhost:80.example", "", 403},
      {"reads may come from anywhere", "GET", "localhost", "http://attacker.example", 0},
      {"a write without a page", "POST", "localhost", "", 0},
      {"a write of a loopback page", "POST", "localhost", "http://127.0.0.1:3000", 0},
      {"a write of a foreign page", "POST", "localhost", "http://attacker.example", 403},
      {"a write of a page without an origin", "PUT", "localhost", "null", 403},
      {"a foreign page in disguise", "DELETE", "localhost", "http://localhost.attacker.example",
       403},
      {"an unknown method counts as a write", "PURGE", "localhost", "https://a.example", 403}};
  const RequestGuard guard("192.0.2.7");
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    HttpRequest request;
    request.method = c.method;
    request.host = c.host;
    request.origin = c.origin;
    const auto response = guard.Refuse(request);
    EXPECT_EQ(response ? response->status : 0, c.status);
  }
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
