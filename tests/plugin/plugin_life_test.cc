// Start, requests, statistics and stop, seen from the host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <tuple>

#include "log/logger.h"
#include "plugin/once_promise.h"
#include "plugin/text_view.h"
#include "tests/plugin/scripted_plugin.h"
#include "tests/support/log_capture.h"

namespace Kest::Testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class PluginLifeTest : public ::testing::Test {
 protected:
  static constexpr const char* kUrl = "/test/v1/word/x";

  PluginLifeTest() { ScriptedPlugin::script = PluginScript(); }
  void Load() { host_.Load(&ScriptedPlugin::Handshake); }
  void LoadAndStart() {
    Load();
    ASSERT_TRUE(host_.Start());
  }
  // A handler that waits for the host's response to "/never".
  static Maybe<std::string> WaitForever(ScriptedPlugin& plugin) {
    auto promise = std::make_shared<OncePromise<std::string>>();
    auto future = promise->GetFuture();
    HostRequest request;
    request.url = "/never";
    plugin.Host().Request(request, [promise = std::move(promise)](Maybe<Response> response) {
      promise->Set(response.GetFailure());
    });
    return plugin.Module().Await(std::move(future));
  }

  LogCapture log_;
  FakeHost host_;
};

TEST_F(PluginLifeTest, StartIdentifiesThePluginAndSendsTheProcesssLogToOneHost) {
  LoadAndStart();
  EXPECT_THAT(host_.Printed({Action::kIdentify}),
              ElementsAre("identify vwm-be-test KestClient/18.0.3 (vwm-be-test)"));
  FakeHost second;
  second.Load(&ScriptedPlugin::Handshake);
  ASSERT_TRUE(second.Start());
  LogError("one line");
  const std::vector<Action> lines = host_.Actions({Action::kLog});
  EXPECT_THAT(lines.back().name, HasSubstr("|  ERROR| | one line"));
  EXPECT_EQ(lines.back().level, 2);
  EXPECT_THAT(lines[lines.size() - 2].name, Not(HasSubstr("one line")));
  EXPECT_THAT(second.Actions({Action::kLog}), IsEmpty());
  host_.Stop();
  EXPECT_EQ(Logger::Instance().FindTarget("PluginLogTarget"), nullptr);
  EXPECT_EQ(ScriptedPlugin::script.alive, 1) << "the second one lives on";
}

TEST_F(PluginLifeTest, TheHostChoosesWhereLinesGo) {
  Logger::Instance().ResetForTests();
  const auto outputs = [&](Level level) {
    std::string names;
    for (const char* name : {"StdErrLogTarget", "DebuggerConsoleLogTarget", "PluginLogTarget"}) {
      const LogTarget* const target = Logger::Instance().FindTarget(name);
      const bool passes = LogFilter::Passes(level, kNoGroups) && target != nullptr;
      names += passes && target->Accepts(level, kNoGroups) ? "+" : "-";
    }
    return names;
  };
  Load();
  EXPECT_EQ(outputs(Level::kWarning), "++-");
  const auto set = host_.Block().api->setLogging;
  set(host_.Block().context, 0, KEST_LOG_HOST);
  EXPECT_EQ(outputs(Level::kAlways), "---") << "before start the host has no log";
  ASSERT_TRUE(host_.Start());
  EXPECT_EQ(outputs(Level::kOkay) + outputs(Level::kError), "--+--+");
  set(host_.Block().context, 2, KEST_LOG_STANDARD_ERROR | KEST_LOG_DEBUGGER);
  EXPECT_EQ(outputs(Level::kWarning) + outputs(Level::kError), "---++-");
  set(host_.Block().context, 4, ~0u);
  EXPECT_EQ(outputs(Level::kAlways), "---") << "no line has this level";
  set(nullptr, 0, ~0u);
  EXPECT_EQ(outputs(Level::kAlways), "---");
}

TEST_F(PluginLifeTest, StartAndStopRunOnce) {
  int runs = 0;
  ScriptedPlugin::script.initialise = [&](ScriptedPlugin&) -> bool {
    ++runs;
    throw std::bad_alloc();
  };
  Load();
  const KestHandshakeBlock& block = host_.Block();
  KestHostServices old = *host_.Services();
  old.size = offsetof(KestHostServices, now) - 1;
  const KestRequest request{};
  KestRequest tooLong{};
  tooLong.headerCount = SIZE_MAX;
  for (const KestResponse* refused :
       {block.api->request(nullptr, &request), block.api->invoke(nullptr, {}, nullptr, 0),
        block.api->request(block.context, nullptr), block.api->request(block.context, &tooLong),
        block.api->invoke(block.context, {}, nullptr, SIZE_MAX)}) {
    EXPECT_EQ(refused->status, 500);
    block.api->release(nullptr, refused);
  }
  block.api->release(nullptr, nullptr);
  block.callbacks->statistics(block.context, nullptr);
  EXPECT_FALSE(block.callbacks->start(block.context, nullptr));
  EXPECT_FALSE(block.callbacks->start(block.context, &old)) << "the table lacks an entry";
  EXPECT_FALSE(host_.Start()) << "an exception in Initialise";
  EXPECT_THAT(host_.Printed({Action::kLog}), Contains(HasSubstr("Start: Out of memory")));
  EXPECT_FALSE(host_.Start());
  EXPECT_EQ(ScriptedPlugin::script.alive, 1);
  ScriptedPlugin::script.shutdown = [] { throw std::runtime_error("not yet"); };
  host_.Stop();
  EXPECT_THAT(log_.Lines(), Contains(" ERROR|| Shutdown: not yet"));
  EXPECT_EQ(ScriptedPlugin::script.alive, 0);
  host_.Stop();
  EXPECT_FALSE(host_.Start());
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(host_.Get(kUrl).message, "Finalizing");
  FakeHost second;
  second.Load(&ScriptedPlugin::Handshake);
  second.Stop();
  EXPECT_EQ(ScriptedPlugin::script.alive, 0) << "also without start";
}

TEST_F(PluginLifeTest, AnExplanationIsARequestThatIsNotCounted) {
  ScriptedPlugin::script.explain = [](std::string_view question) -> Response {
    if (question == "fail") throw std::runtime_error("broken");
    return {200, {}, "application/json", "[" + std::string(question) + "]"};
  };
  LoadAndStart();
  const KestHandshakeBlock& block = host_.Block();
  EXPECT_TRUE(KestCanExplain(block.api));
  KestApiDescriptor older = *block.api;
  older.size -= 1;
  EXPECT_FALSE(KestCanExplain(&older));
  const auto explain = [&block](std::string_view question) {
    const KestResponse* const response = block.api->explain(block.context, ToText(question));
    const std::string text = std::to_string(response->status) + " " +
                             std::string(ToView(response->message)) +
                             std::string(ToView(response->body));
    block.api->release(block.context, response);
    return text;
  };
  EXPECT_EQ(explain("why?a=b"), "200 [why?a=b]");
  EXPECT_EQ(explain("fail"), "500 broken");
  KestStatistics statistics;
  block.callbacks->statistics(block.context, &statistics);
  EXPECT_EQ(statistics.requestsHandled[0], 0u);
  EXPECT_EQ(statistics.requestsFailed[0], 0u);
  host_.Stop();
  EXPECT_EQ(explain("why"), "500 Finalizing");
}

TEST_F(PluginLifeTest, TimeAndIdsAreTheHostsWhereItHasThem) {
  const std::tuple<const char*, uint32_t, const char*> kCases[] = {
      {"both", sizeof(KestHostServices), "host's time, host's id"},
      {"half an entry", offsetof(KestHostServices, cause) - 1, "host's time, system's id"},
      {"none", offsetof(KestHostServices, now), "system's time, system's id"},
  };
  ScriptedPlugin::script.handler = [](ScriptedPlugin& plugin) {
    const bool isHosts = plugin.Module().NowSeconds() == FakeHost::kStartOfTime + 3;
    UuidBytes uuid{};
    EXPECT_TRUE(plugin.Module().CreateUuid(&uuid));
    LogError("now");
    return Maybe<std::string>(
        std::string(isHosts ? "host's time, " : "system's time, ")
            .append(uuid[0] == 0xab && uuid[15] == 0xab ? "host's id" : "system's id"));
  };
  for (const auto& [why, size, expected] : kCases) {
    FakeHost host;
    host.SetTableSize(size);
    host.Load(&ScriptedPlugin::Handshake);
    EXPECT_TRUE(host.Start()) << why;
    host.AdvanceSeconds(3);
    EXPECT_EQ(host.Get(kUrl).body, '"' + std::string(expected) + '"') << why;
    const auto stamp = HasSubstr(":23.000|  ERROR| | now");
    const auto lines = host.Printed({Action::kLog});
    EXPECT_EQ(::testing::Value(lines, Contains(stamp)), size > offsetof(KestHostServices, now))
        << why << ::testing::PrintToString(lines);
  }
}

TEST_F(PluginLifeTest, AnExceptionOfAHandlerIsAResponse) {
  const std::pair<void (*)(), const char*> kCases[] = {
      {[] { throw std::runtime_error("broken"); }, "broken"},
      {[] { throw std::bad_alloc(); }, "Out of memory"},
      {[] { throw 7; }, "Internal server error"},
  };
  LoadAndStart();
  for (const auto& [fail, message] : kCases) {
    ScriptedPlugin::script.handler = [fail = fail](ScriptedPlugin&) {
      fail();
      return Maybe<std::string>(std::string());
    };
    const FakeHost::Reply reply = host_.Get(kUrl);
    EXPECT_EQ(reply.status, 500);
    EXPECT_EQ(reply.message, message);
  }
  const FakeHost::Reply invoked = host_.Invoke("Unknown");
  EXPECT_EQ(invoked.status, 404);
  EXPECT_EQ(invoked.message, "Invalid function");
}

TEST_F(PluginLifeTest, StatisticsCountSinceStartAndFillFourteenWords) {
  LogWarning("before start");
  ScriptedPlugin::script.initialise = [](ScriptedPlugin& plugin) {
    plugin.Host().Subscribe("e", [](std::string_view) {});
    plugin.Host().Publish("/p", ResourceEventType::kUpdate, "1");
    LogWarning("a");
    LogError("b");
    LogError("c");
    return true;
  };
  LoadAndStart();
  host_.DeliverEvent("e", "1");
  host_.DeliverEvent("e", "1");
  for (const char* url : {kUrl, kUrl, "/nowhere"}) host_.Get(url);
  struct {
    KestStatistics statistics;
    uint32_t after;
  } words;
  std::memset(&words, 0xAB, sizeof words);
  host_.Block().callbacks->statistics(host_.Block().context, &words.statistics);
  const uint32_t kExpected[15] = {3, 0, 1, 0, 2, 0, 1, 0, 1, 0, 2, 0, 0, 0, 0xABABABAB};
  EXPECT_EQ(std::memcmp(&words, kExpected, sizeof words), 0);
}

TEST_F(PluginLifeTest, StopEndsTheWaitsInsideAndLetsNobodyElseIn) {
  host_.OnRequest("GET", "/never", FakeResponse{200, "", "", "", true});
  ScriptedPlugin::script.initialise = [](ScriptedPlugin& plugin) {
    return plugin.Host().Subscribe("e", [](std::string_view) { FAIL() << "delivered after stop"; });
  };
  // The waiter needs several turns more after its failure, and tries a second request.
  std::string second;
  ScriptedPlugin::script.handler = [&second](ScriptedPlugin& plugin) {
    Maybe<std::string> first = WaitForever(plugin);
    for (int i = 0; i < 3; ++i) plugin.Host().Yield();
    EXPECT_TRUE(plugin.IsStopping());
    EXPECT_EQ(ScriptedPlugin::script.alive, 1) << "destroyed under a handler";
    second = WaitForever(plugin).GetFailure().text;
    return first;
  };
  LoadAndStart();
  const auto waiting = host_.StartRequest("GET", kUrl);
  host_.RunUntilIdle();
  ASSERT_FALSE(waiting->done);
  std::shared_ptr<const FakeHost::Reply> late;
  host_.RunTask([&] {
    host_.DeliverEvent("e", "1");  // their turn comes while stop yields
    late = host_.StartRequest("GET", kUrl);
    host_.Block().callbacks->stop(host_.Block().context);
    EXPECT_EQ(ScriptedPlugin::script.alive, 0);
  });
  EXPECT_EQ(waiting->message, "Finalizing");
  EXPECT_EQ(waiting->status, 500);
  EXPECT_EQ(second, "Finalizing");
  EXPECT_THAT(host_.Subscriptions(), IsEmpty());
  EXPECT_EQ(late->message, "Finalizing");
}

TEST_F(PluginLifeTest, EventsOnAThreadMeetAStopWithoutHarm) {
  for (int round = 0; round < 20; ++round) {
    std::atomic<int> seen = 0;
    const auto expectPlugin = [](void*) { EXPECT_EQ(ScriptedPlugin::script.alive, 1); };
    ScriptedPlugin::script.initialise = [&](ScriptedPlugin& plugin) {
      return plugin.Host().Subscribe("OnServiceProxyUuidEvent", [&](std::string_view) {
        // What a task holds goes before the plugin does, whether it runs or not.
        const std::shared_ptr<void> held(&seen, expectPlugin);
        plugin.Module().PostTask("work " + std::to_string(++seen), [held] {});
      });
    };
    FakeHost host;
    host.Load(&ScriptedPlugin::Handshake);
    ASSERT_TRUE(host.Start());
    for (int i = 0; i < 50; ++i) host.DeliverEvent("OnServiceProxyUuidEvent", "{}");
    while (round % 2 != 0 && seen == 0) std::this_thread::yield();
    host.Stop();
    const int seenAtStop = seen;
    host.RunUntilIdle();
    EXPECT_EQ(seen, seenAtStop);
  }
}

}  // namespace
}  // namespace Kest::Testing
