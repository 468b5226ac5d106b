#include "host/development_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <utility>

#include "tests/host/loopback_client.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// The whole host with a plugin that returns what it is asked.
class DevelopmentHostTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto started = host_.Start();
    ASSERT_TRUE(started) << started.GetFailure().text;
    const std::string line = host_.ReadyLine();
    const size_t place = line.find("\"port\":") + 7;
    std::from_chars(line.data() + place, line.data() + line.size(), port_);
  }
  void TearDown() override { Stop(); }

  void Stop() {
    if (std::exchange(stopped_, true)) return;
    const auto stopped = host_.Stop();
    EXPECT_TRUE(stopped) << stopped.GetFailure().text;
  }
  // Waits until `text` shows in the host's health.
  std::string AwaitHealth(std::string_view text) const {
    std::string health;
    for (int tries = 0; tries < 5000 && health.find(text) == std::string::npos; ++tries) {
      health = Ask(Simple("GET /_host/health"));
    }
    return health;
  }

  static std::string Head(std::string_view requestLine) {
    return std::string(requestLine) + " HTTP/1.1\r\nHost: localhost\r\n";
  }
  static std::string Simple(std::string_view requestLine) {
    return Head(requestLine) + "Connection: close\r\n\r\n";
  }
  static std::string WithBody(std::string_view requestLine, std::string_view type,
                              std::string_view body) {
    return Head(requestLine) + "Connection: close\r\nContent-Type: " + std::string(type) +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
  }
  std::string Ask(const std::string& request) const {
    LoopbackClient client(port_);
    client.Send(request);
    return client.ReadToEnd();
  }

  HostLog log_{stderr, LogLevel::kNone};
  DevelopmentHost host_{{.pluginPath = ECHO_PLUGIN, .worldPath = "", .port = 0}, &log_};
  uint16_t port_ = 0;
  bool stopped_ = false;
};

TEST_F(DevelopmentHostTest, TurnsResponsesOfThePluginAndItsOwnIntoHttp) {
  struct Case {
    std::string request;
    const char *status, *ending;
  };
  const std::string kBody = "PUT /_host/gameflow";
  const Case kCases[] = {
      {Head("GET /tav-loot/v1/a%2Fb?x=1") + "X-Other: 1\r\nConnection: close\r\n\r\n", "200 OK",
       R"({"GET":"/tav-loot/v1/a%2Fb?x=1|||0|0"})"},
      {Head("PATCH /tav-loot/v1/p") +
           "Accept: application/x-msgpack;q=0.5\r\nContent-Type: text/x\r\nAccept: */*\r\n"
           "Content-Length: 2\r\nConnection: close\r\n\r\nab",
       "200 OK", R"({"PATCH":"/tav-loot/v1/p|text/x|application/x-msgpack;q=0.5, */*|2|0"})"},
      {Simple("GET /tav-loot/v1/none"), "204 No Content", "\r\n\r\n"},
      {Simple("GET /tav-loot/v1/fail"), "500 Internal Server Error",
       "{\"status\":500,\"title\":\"Internal Server Error\",\"detail\":\"no "
       "\\\"\xEF\xBF\xBD\\\"\"}"},
      {Simple("GET /tav-loot/v1/null"), "500 ", R"("detail":"Out of memory"})"},
      {Simple("GET /tav-loot/v1/odd"), "502 ", "}"},
      {Simple("TRACE /tav-loot/v1/a"), "405 ", "}"},
      {Simple("GET /tav-other/v1/a"), "404 ", "}"},
      {Simple("GET /"), "200 ", R"("endpoints":[]})"},
      {Simple("GET /_host/health"), "200 ", "}"},
      {Simple("GET /_host/log"), "200 ", "\r\n\r\n[]"},
      {Simple("GET /_host/help"), "200 ", R"({"types":[{"name":"Echo"}]})"},
      {Simple("GET /_host/help?format=Epytext"), "200 ", "\r\n\r\nEcho\r\n"},
      {Simple("GET /_host/help?format=x"), "400 ", R"("detail":"no such format"})"},
      {Simple("GET /_host/openapi.json"), "200 ", R"("x-events":{}})"},
      {Simple("POST /_host/openapi.json"), "405 ", "}"},
      {Simple("GET /_host/nothing"), "404 ", "}"},
      {WithBody(kBody, "text/plain", "x"), "415 ", "}"},
      {WithBody(kBody, "application/json; charset=utf-8", R"({"phase":"Lobby"})"), "200 ", "}"},
      {Simple("POST /_host/idle?timeoutMilliseconds=1s"), "400 ", "}"},
      {Simple("GET /_host/events?lastEventId=x"), "400 ", "}"},
      {"GET /_host/health HTTP/1.1\r\nHost: a.example\r\n\r\n", "403 ", "}"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.request);
    const std::string response = Ask(c.request);
    EXPECT_THAT(response, StartsWith(std::string("HTTP/1.1 ") + c.status));
    EXPECT_THAT(response, EndsWith(c.ending));
    const bool isFailure = response[9] >= '4';
    EXPECT_EQ(response.find("Content-Type: application/problem+json") != std::string::npos,
              isFailure);
  }
}

TEST_F(DevelopmentHostTest, BytesGoBothWaysAsTheyAre) {
  const std::string bytes("\x81\0\xFF\r\n\0", 6);
  const std::string response =
      Ask(WithBody("POST /tav-loot/v1/bytes", "application/x-msgpack", bytes));
  EXPECT_THAT(response, HasSubstr("\r\nVary: Accept\r\n"));
  EXPECT_THAT(response, HasSubstr("\r\nContent-Type: application/x-msgpack\r\n"));
  EXPECT_THAT(response, EndsWith("\r\n\r\n" + bytes));
  EXPECT_EQ(Ask(Simple("GET /tav-loot/v1/fail")).find("Vary"), std::string::npos);
}

TEST_F(DevelopmentHostTest, AWaitingRequestLeavesOthersRunningAndTheHostBusy) {
  LoopbackClient waiting(port_);
  waiting.Send(Simple("GET /tav-loot/v1/wait"));
  EXPECT_THAT(AwaitHealth("Wait: release"),
              HasSubstr(R"({"name":"GET /tav-loot/v1/wait","waitsFor":"Wait: release"})"));
  EXPECT_THAT(Ask(Simple("POST /_host/idle?timeoutMilliseconds=20")), HasSubstr("504 "));
  EXPECT_THAT(Ask(Simple("POST /tav-loot/v1/release")), HasSubstr("200 OK"));
  EXPECT_THAT(waiting.ReadToEnd(), HasSubstr("200 OK"));
  EXPECT_THAT(Ask(Simple("POST /_host/idle")), EndsWith(R"({"idle":true})"));
}

TEST_F(DevelopmentHostTest, PublishedEventsAreFollowedLiveAndFromAPlace) {
  const auto publish = [&](std::string_view json) {
    return Ask(WithBody("POST /tav-loot/v1/publish", "application/json", json));
  };
  publish("1");
  LoopbackClient live(port_);
  live.Send(Simple("GET /_host/events"));
  live.ReadUpTo("\r\n\r\n");
  EXPECT_THAT(publish("{"), HasSubstr("400 "));
  publish("2");
  const std::string frame =
      "id: 2\nevent: resource\n"
      "data: {\"uri\":\"/tav-loot/v1/x\",\"eventType\":\"Update\",\"data\":2}\n\n";
  EXPECT_EQ(live.ReadUpTo("\n\n"), frame);
  LoopbackClient again(port_);
  again.Send(Head("GET /_host/events?lastEventId=0") + "Last-Event-ID: 1\r\n\r\n");
  again.ReadUpTo("\r\n\r\n");
  EXPECT_EQ(again.ReadUpTo("\n\n"), frame);
}

TEST_F(DevelopmentHostTest, ResetAndStopEndWhatWaitsAndResetLoadsThePluginAfresh) {
  Ask(Simple("GET /tav-loot/v1/runs"));
  LoopbackClient waiting(port_);
  waiting.Send(Simple("GET /tav-loot/v1/wait"));
  AwaitHealth("Wait: release");
  EXPECT_THAT(Ask(Simple("POST /_host/reset")), EndsWith(R"({"reset":true})"));
  EXPECT_THAT(waiting.ReadToEnd(), HasSubstr("Finalizing"));
  EXPECT_THAT(Ask(Simple("GET /tav-loot/v1/runs")), EndsWith("\r\n\r\n1"));

  LoopbackClient again(port_);
  again.Send(Simple("GET /tav-loot/v1/wait"));
  LoopbackClient idle(port_);
  idle.Send(Simple("POST /_host/idle?timeoutMilliseconds=600000"));
  AwaitHealth("Wait: release");
  AwaitHealth("idle?");
  Stop();
  EXPECT_THAT(again.ReadToEnd(), HasSubstr("Finalizing"));
  EXPECT_THAT(idle.ReadToEnd(), HasSubstr("HTTP/1.1 "));
}

TEST(DevelopmentHost, SaysWhyItCannotStart) {
  const auto reason = [](std::string plugin, std::string world, std::string address) {
    HostLog log(stderr, LogLevel::kNone);
    DevelopmentHost host({plugin, world, address, 0}, &log);
    const auto started = host.Start();
    return started ? "started" : started.GetFailure().text;
  };
  EXPECT_THAT(reason("/no/such.so", "", "127.0.0.1"),
              StartsWith("Cannot load the plugin /no/such.so: "));
  EXPECT_THAT(reason("libdl.so.2", "", "127.0.0.1"),
              StartsWith("Cannot load the plugin libdl.so.2: "));
  EXPECT_THAT(reason(ECHO_PLUGIN, "/no/such.json", "127.0.0.1"),
              StartsWith("Cannot read the world /no/such.json: "));
  EXPECT_THAT(reason(ECHO_PLUGIN, ECHO_PLUGIN, "127.0.0.1"), StartsWith(ECHO_PLUGIN ":1:"));
  EXPECT_THAT(reason(ECHO_PLUGIN, "", "nowhere"), StartsWith("Cannot listen on nowhere:0: "));
}

}  // namespace
}  // namespace Kest::Host
