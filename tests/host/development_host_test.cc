#include "host/development_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <future>
#include <utility>

#include "host/scenario/scenarios.h"
#include "tests/host/http_text.h"
#include "tests/host/loopback_client.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
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
    return std::string(requestLine).append(" HTTP/1.1\r\nHost: localhost\r\n");
  }
  static std::string Simple(std::string_view requestLine) {
    return Head(requestLine).append("Connection: close\r\n\r\n");
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
  DevelopmentHost host_{{.pluginPath = ECHO_PLUGIN,
                         .worldPath = "",
                         .port = 0,
                         .assetFolder = KEST_TESTS_FOLDER,
                         .signsIn = false},
                        &log_};
  uint16_t port_ = 0;
  bool stopped_ = false;
};

TEST_F(DevelopmentHostTest, TurnsResponsesOfThePluginAndItsOwnIntoHttp) {
  EXPECT_TRUE(Testing::GoldenCases(
      "tests/host/host_requests.txt",
      [this](const std::string& request) { return Outline(Ask(RequestOf(request))); }));
  EXPECT_THAT(Ask(Simple("GET /_host/health")), StartsWith("HTTP/1.1 200 OK"));
}

TEST_F(DevelopmentHostTest, BrowsersGetTheConsoleAndOthersTheIndex) {
  const struct {
    const char* why;
    const char* accept;
    const char* type;
  } cases[] = {
      {"a browser", "text/html,application/xhtml+xml,application/xml;q=0.9,*/*;q=0.8",
       "text/html;"},
      {"what comes", "*/*", "application/json"},
      {"JSON goes before", "TEXT/HTML ; q=0.5, application/json;q=0.75", "application/json"},
      {"HTML goes before", "application/json;q=0.2, text/html;level=1;q=0.25", "text/html;"},
      {"no HTML", "text/html;q=0.000, */*", "application/json"},
      {"no quality", "text/html;q=x", "text/html;"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    std::string request = Head("GET /");
    request.append("Connection: close\r\nAccept: ").append(c.accept).append("\r\n\r\n");
    const std::string response = Ask(request);
    EXPECT_THAT(response, AllOf(HasSubstr("\r\nVary: Accept\r\n"),
                                HasSubstr("\r\nContent-Type: " + std::string(c.type))));
    EXPECT_EQ(response.find("Content-Security-Policy: default-src 'none'") != std::string::npos,
              c.type == std::string("text/html;"));
  }
  EXPECT_THAT(Ask(Simple("GET /_host/console/..%2Fmain.cc")), StartsWith("HTTP/1.1 404 "));
  const std::string condition =
      "If-None-Match: *\r\nAccept: text/html\r\nConnection: close\r\n\r\n";
  EXPECT_THAT(Ask(Head("GET /") + condition),
              AllOf(StartsWith("HTTP/1.1 304 "), HasSubstr("\r\nETag: \""), EndsWith("\r\n\r\n")));
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
  EXPECT_THAT(live.ReadUpTo(": connected\n\n"), HasSubstr("200 OK")) << "a head with something";
  EXPECT_THAT(publish("{"), HasSubstr("400 "));
  publish("2");
  const std::string frame =
      "id: 2\nevent: resource\n"
      "data: {\"uri\":\"/tav-loot/v1/x\",\"eventType\":\"Update\",\"data\":2}\n\n";
  EXPECT_EQ(live.ReadUpTo("\n\n"), frame);
  LoopbackClient again(port_);
  again.Send(Head("GET /_host/events?lastEventId=0") + "Last-Event-ID: 1\r\n\r\n");
  again.ReadUpTo(": connected\n\n");
  EXPECT_EQ(again.ReadUpTo("\n\n"), frame);
  Ask(Simple("POST /_host/reset"));
  EXPECT_EQ(live.ReadUpTo("\n\n"), "id: 3\nevent: reset\ndata: {}\n\n");
}

TEST_F(DevelopmentHostTest, AWaitForAnEventMeetsItAndKeepsNothingBusy) {
  const auto wait = [&](std::string_view body) {
    return WithBody("POST /_host/wait", "application/json", body);
  };
  LoopbackClient waiting(port_);
  waiting.Send(wait(R"({"where":{"/data":"second"}})"));
  AwaitHealth("POST /_host/wait");
  EXPECT_THAT(Ask(Simple("POST /_host/idle")), EndsWith(R"({"idle":true})"));
  for (const char* json : {R"("first")", R"("second")", R"("third")"}) {
    Ask(WithBody("POST /tav-loot/v1/publish", "application/json", json));
  }
  const char* const event =
      R"({"id":2,"event":{"uri":"/tav-loot/v1/x","eventType":"Update","data":"second"}})";
  EXPECT_THAT(waiting.ReadToEnd(), EndsWith(event));
  EXPECT_THAT(Ask(wait(R"({"after":1})")), EndsWith(event));
}

TEST_F(DevelopmentHostTest, PagesOfThisMachineMayReadWhatIsServed) {
  for (const char* target : {"GET /tav-loot/v1/none", "GET /_host/health", "GET /_host/events"}) {
    LoopbackClient page(port_);
    page.Send(Head(target) + "Origin: http://localhost:5173\r\n\r\n");
    EXPECT_THAT(page.ReadUpTo("\r\n\r\n"),
                AllOf(HasSubstr("Access-Control-Allow-Origin: http://localhost:5173\r\n"),
                      HasSubstr("Vary: Origin\r\n")))
        << target;
  }
  EXPECT_THAT(Ask(Head("GET /_host/health") +
                  "Connection: close\r\nOrigin: https://attacker.example\r\n\r\n"),
              AllOf(HasSubstr("200 OK"), Not(HasSubstr("Access-Control"))));
}

// Sessions of the echo plugin without a server.
struct EchoSessions {
  explicit EchoSessions(bool signsIn)
      : sessions(ECHO_PLUGIN, signsIn, {&scheduler, &events, &stream, &log, &traffic}) {}

  HostLog log{stderr, LogLevel::kNone};
  EventStream stream;
  ServiceEventThread events{[](const ServiceEventThread::Event&) {}};
  Timeline timeline{[] { return int64_t{0}; }};
  Ledger ledger;
  Traffic traffic{&timeline, &ledger};
  Scheduler scheduler{[](std::string_view, std::string_view) { ADD_FAILURE(); }};
  SessionManager sessions;
  Scenarios scenarios{{}, {&scheduler, &sessions, &log}};
};

TEST(SessionManager, ANewWorldIsMadeBeforeTheOldOneGoes) {
  EchoSessions host(true);
  std::promise<bool> runs;
  host.scheduler.Post({.name = "start", .work = [&] {
                         EXPECT_TRUE(host.scenarios.Start());
                         const PluginSession* const session = host.sessions.Current();
                         EXPECT_FALSE(host.scenarios.Choose("no such scenario"));
                         EXPECT_FALSE(host.scenarios.Import({"body", "{"}));
                         EXPECT_FALSE(host.sessions.BeginAgain("no/such/plugin.so"));
                         runs.set_value(host.sessions.Current() == session);
                         host.sessions.Stop();
                       }});
  EXPECT_TRUE(runs.get_future().get());
  EXPECT_TRUE(host.scheduler.End());
  EXPECT_EQ(host.stream.Held().last, 0u);
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

TEST_F(DevelopmentHostTest, AHostFullOfWaitingRequestsCanBeReset) {
  const std::string request = Simple("GET /tav-loot/v1/wait");
  std::vector<std::unique_ptr<LoopbackClient>> waiting;
  for (int i = 0; i < 256; ++i) {
    waiting.push_back(std::make_unique<LoopbackClient>(port_));
    waiting.back()->Send(request);
  }
  EXPECT_THAT(Ask(Simple("GET /tav-loot/v1/a")), HasSubstr("503 "));
  EXPECT_THAT(Ask(Simple("GET /_host/events")), HasSubstr("503 "));
  EXPECT_THAT(Ask(Simple("POST /_host/reset")), EndsWith(R"({"reset":true})"));
  EXPECT_THAT(waiting.back()->ReadToEnd(), HasSubstr("Finalizing"));
}

TEST(SessionManager, ARequestDuringResetsMeetsTheNewPlugin) {
  EchoSessions host(false);
  const auto ask = [&host](const char* target) {
    HttpRequest request;
    request.method = "GET";
    request.target = target;
    return host.sessions.Current()->Request(request).body;
  };
  std::promise<std::string> runs;
  host.scheduler.Post(
      {.name = "start", .work = [&] {
         EXPECT_TRUE(host.scenarios.Start());
         ask("/tav-loot/v1/runs");
         host.scheduler.Post({.name = "wait", .work = [&] { ask("/tav-loot/v1/wait"); }});
         for (const char* name : {"reset", "reset at once"}) {
           host.scheduler.Post(
               {.name = name, .work = [&] { EXPECT_TRUE(host.scenarios.Reset()); }});
         }
         host.scheduler.Post({.name = "ask", .work = [&] {
                                runs.set_value(ask("/tav-loot/v1/runs"));
                                host.sessions.Stop();
                              }});
       }});
  EXPECT_EQ(runs.get_future().get(), "1");
  EXPECT_TRUE(host.scheduler.End());
}

TEST(DevelopmentHost, SaysWhyItCannotStart) {
  const auto reason = [](const std::string& plugin, const std::string& world,
                         const std::string& address) {
    HostLog log(stderr, LogLevel::kNone);
    DevelopmentHost host({plugin, world, address, 0}, &log);
    const auto started = host.Start();
    return started ? "started" : started.GetFailure().text;
  };
  EXPECT_THAT(reason("/no/such.so", "", "127.0.0.1"),
              StartsWith("Cannot load the plugin /no/such.so: "));
  EXPECT_THAT(reason("libdl.so.2", "", "127.0.0.1"),
              StartsWith("Cannot load the plugin libdl.so.2: "));
  EXPECT_THAT(reason(REFUSING_PLUGIN, "", "127.0.0.1"), EndsWith(" did not start."));
  EXPECT_THAT(reason(ECHO_PLUGIN, "/no/such.json", "127.0.0.1"),
              StartsWith("Cannot read the world /no/such.json: "));
  EXPECT_THAT(reason(ECHO_PLUGIN, ECHO_PLUGIN, "127.0.0.1"), StartsWith(ECHO_PLUGIN ":1:"));
  EXPECT_THAT(reason(ECHO_PLUGIN, "", "nowhere"), StartsWith("Cannot listen on nowhere:0: "));
}

}  // namespace
}  // namespace Kest::Host
