#include "loot/calls/service_proxy.h"

#include <thread>

#include "tests/loot/calls_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class ServiceProxyTest : public CallsTest {
 protected:
  ServiceProxyTest() { proxy_.Start(); }

  // Starts a call in a task; `results_` gets its value or its failure text when it ends.
  template <class R = TestRecord, class... A>
  void Call(std::string_view method, const A&... arguments) {
    host_.RunTask([this, method, arguments...] {
      Maybe<R> result = proxy_.InvokeAndWait<R>("loot", method, arguments...);
      if constexpr (std::is_same_v<R, TestRecord>) {
        results_.push_back(result ? result.GetValue().name : result.GetFailure().text);
      } else {
        results_.push_back(result ? "done" : result.GetFailure().text);
      }
    });
  }
  std::string CallByMethod(std::string_view method) {
    // Shared: the task may still wait when this function has returned.
    const auto failure = std::make_shared<std::string>("not returned");
    host_.RunTask([this, method, failure] {
      *failure = proxy_.InvokeAsync<TestRecord>(
          "loot", method, "key", true,
          [this](Maybe<TestRecord> result) { results_.push_back(result.GetValue().name); });
    });
    return *failure;
  }
  void Respond(std::string_view event, const std::string& uuid, const std::string& name) {
    host_.DeliverEvent(
        event, R"({"uuid":")" + uuid +
                   R"(","serviceName":"loot","methodName":"m","payload":"{\"name\":\")" + name +
                   R"(\"}","status":"OK","error":""})");
    host_.RunUntilIdle();
  }
  static ServiceReply Named(const char* name) {
    return ServiceReply{std::string(R"({"name":")") + name + R"("})", ""};
  }

  std::vector<std::string> results_;
};

TEST_F(ServiceProxyTest, AUuidCallSendsItsArgumentsAndIsFulfilledByItsEvent) {
  host_.OnService("loot", "m", [](const std::string&) { return Named("reply"); });
  Call("m", std::string("id"), int64_t{-7}, TestRecord{"x", 0.5});
  EXPECT_THAT(results_, ElementsAre("reply"));
  ASSERT_EQ(host_.Requests().size(), 1u);
  EXPECT_EQ(host_.Requests()[0].url, "/tav-login/v1/service-proxy-uuid-requests");
  EXPECT_EQ(
      host_.Requests()[0].body,
      R"({"serviceName":"loot","methodName":"m","args":["id",-7,{"name":"x","number":0.5}]})");
  EXPECT_THAT(log_.Lines(),
              ElementsAre("ALWAYS|| vwm-be-test: Preparing service proxy request: loot.m",
                          "ALWAYS|| vwm-be-test: Started service proxy request: loot.m (uuid-1)",
                          "ALWAYS|| vwm-be-test: Fulfilled service proxy request: uuid-1"));
}

TEST_F(ServiceProxyTest, CallsOfOneMethodRunSideBySideAndEachGetsItsOwnResponse) {
  Call("m");
  Call("m");
  Respond("OnServiceProxyUuidEvent", "uuid-2", "second");
  Respond("OnServiceProxyUuidEvent", "unknown", "nobody");
  Respond("OnServiceProxyUuidEvent", "uuid-1", "first");
  EXPECT_THAT(results_, ElementsAre("second", "first"));
}

TEST_F(ServiceProxyTest, AResponseBeforeItsRequestIsKeptAndALaterOneReplacesIt) {
  Respond("OnServiceProxyUuidEvent", "uuid-1", "stale");
  Respond("OnServiceProxyUuidEvent", "uuid-1", "early");
  Call("m");
  EXPECT_THAT(results_, ElementsAre("early"));
}

TEST_F(ServiceProxyTest, OneMethodBasedCallAtATimeAlsoWhileItIsBeingSent) {
  FakeAnswer held{204, ""};
  held.held = true;
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-method-requests", held);
  EXPECT_EQ(CallByMethod("m"), "not returned");
  EXPECT_EQ(CallByMethod("m"), "Request already in flight");
  EXPECT_EQ(host_.Requests().size(), 1u);
  EXPECT_EQ(host_.Requests()[0].body,
            R"({"serviceName":"loot","methodName":"m","requestKey":"key","flag":true,"args":[]})");
  host_.ReleaseHeld();
  EXPECT_EQ(CallByMethod("m"), "Request already in flight");
  EXPECT_THAT(log_.Lines(), Contains(" ERROR|| vwm-be-test: Could not invoke service proxy as "
                                     "request is already in flight"));
  Respond("OnServiceProxyMethodEvent", "", "by method");
  EXPECT_THAT(results_, ElementsAre("by method"));
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-method-requests", FakeAnswer{500, "", "no"});
  const char* kRefused = "Error response for POST /tav-login/v1/service-proxy-method-requests: no";
  EXPECT_EQ(CallByMethod("m"), kRefused);
  EXPECT_EQ(CallByMethod("m"), kRefused) << "a failed start must not keep the key";
}

TEST_F(ServiceProxyTest, FailuresComeWithTheirTexts) {
  host_.OnService("loot", "error", [](const std::string&) { return ServiceReply{"{}", "denied"}; });
  host_.OnService("loot", "torn", [](const std::string&) { return ServiceReply{"[1", ""}; });
  host_.OnService("loot", "void", [](const std::string&) { return ServiceReply{"", ""}; });
  Call("error");
  Call("torn");
  Call<Nothing>("void");
  Call("m", UnregisteredRecord{});
  EXPECT_THAT(results_,
              ElementsAre("denied", "Missing a comma or ']' after an array element.", "done",
                          "Failed to convert type Kest::Client::Loot::UnregisteredRecord to "
                          "BindingProperty for serialization"));
  EXPECT_THAT(log_.Lines(), Contains(" ERROR|| vwm-be-test: Couldn't convert SVDS DTO "
                                     "Kest::Client::Loot::TestRecord to C++ from [1"));
  EXPECT_EQ(host_.Requests().size(), 3u) << "the unconvertible argument must not be sent";
}

TEST_F(ServiceProxyTest, TheSessionAnswersInItsReply) {
  host_.OnService("facade", "call", [](const std::string&) { return Named("at once"); });
  host_.OnService("facade", "torn", [](const std::string&) { return ServiceReply{"7", ""}; });
  host_.OnService("facade", "no", [](const std::string&) { return ServiceReply{"", "denied"}; });
  host_.RunTask([this] {
    for (const char* method : {"call", "torn", "no"}) {
      Maybe<TestRecord> result = proxy_.InvokeSession<TestRecord>("facade", method, 1, 2);
      results_.push_back(result ? result.GetValue().name : result.GetFailure().text);
    }
    results_.push_back(
        proxy_.InvokeSession<Nothing>("facade", "call", UnregisteredRecord{}).GetFailure().text);
  });
  EXPECT_EQ(host_.Requests()[0].body,
            R"({"serviceName":"facade","methodName":"call","args":[1,2]})");
  ASSERT_EQ(results_.size(), 4u);
  EXPECT_EQ(results_[0], "at once");
  EXPECT_THAT(results_[1], ::testing::StartsWith("Error converting response for POST "));
  EXPECT_EQ(results_[2], "Error response for POST /tav-login/v1/session/invoke: denied");
  EXPECT_THAT(results_[3], ::testing::StartsWith("Couldn't convert SVDS call parameters: "));
  EXPECT_THAT(log_.Lines(), Contains(" ERROR|| vwm-be-test: Couldn't convert SVDS DTO "
                                     "Kest::Client::Loot::TestRecord to C++ from 7"));
}

TEST_F(ServiceProxyTest, AnAsynchronousResponseNeedsAHandler) {
  Respond("OnServiceProxyAsyncEvent", "u", "lost");
  EXPECT_THAT(log_.Lines(), ElementsAre(" ERROR|| vwm-be-test: Could not find registered handler "
                                        "for async service proxy event loot.m"));
  std::string payload;
  proxy_.SubscribeAsync("loot", "m", [&](PluginServiceProxyResponse r) { payload = r.payload; });
  Respond("OnServiceProxyAsyncEvent", "u", "found");
  Respond("OnServiceProxyAsyncEvent", "u", "again");
  EXPECT_EQ(payload, R"({"name":"again"})");
}

TEST_F(ServiceProxyTest, PlatformMessagesReachTheirSubtopicAsTasks) {
  std::string body;
  proxy_.SubscribeSvds("com.x", [&](const PluginSvdsEvent& event) {
    services_.Yield();  // only tasks may
    body = event.body.FindMember("a")->AsString();
  });
  host_.SendSvds("com.x", R"({"a":"b"})");
  EXPECT_EQ(body, "b");
  host_.DeliverEvent("OnSvdsEvent_com.x", "torn");
  host_.RunUntilIdle();
  ASSERT_EQ(log_.Lines().size(), 1u);
  EXPECT_THAT(log_.Lines()[0],
              ::testing::StartsWith(" ERROR|| vwm-be-test: Could not read OnSvdsEvent_com.x: "));
}

TEST_F(ServiceProxyTest, TheEndCutsEveryCallShort) {
  FakeAnswer held{200, "\"uuid-9\""};
  held.held = true;
  Call("pending");
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests", held);
  Call("starting");
  EndPlugin();
  EXPECT_THAT(results_, ElementsAre("Finalizing", "Finalizing"));
  host_.ReleaseHeld();
  Call("late");
  EXPECT_EQ(results_.back(), "Finalizing");
  host_.RunTask([this] {
    results_.push_back(proxy_.InvokeSession<Nothing>("loot", "late").GetFailure().text);
  });
  EXPECT_EQ(results_.back(), "Finalizing");
}

// ---- ResponseTable ------------------------------------------------------------------------------

class ResponseTableTest : public CallsTest {
 protected:
  static PluginServiceProxyResponse WithPayload(std::string payload) {
    PluginServiceProxyResponse response;
    response.payload = std::move(payload);
    return response;
  }
  ResponseTable::Completion Note() {
    return [this](PluginServiceProxyResponse r) { seen_.push_back(r.payload + r.error); };
  }

  ResponseTable table_{name_};
  std::vector<std::string> seen_;
};

TEST_F(ResponseTableTest, ACompletionThatThrowsGetsTheTextOnceAndBlocksNobody) {
  int calls = 0;
  table_.AddPending("a", [&](PluginServiceProxyResponse r) {
    seen_.push_back("a:" + r.error);
    if (++calls < 3) throw std::runtime_error("full");
  });
  table_.AddPending("b", Note());
  table_.AddResponse("a", WithPayload("1"));
  table_.AddResponse("b", WithPayload("2"));
  table_.AddResponse("a", WithPayload("3"));
  EXPECT_THAT(seen_, ElementsAre("a:", "a:full", "2"));
}

TEST_F(ResponseTableTest, KeepsWithinItsBoundsTheOldestGoingFirst) {
  for (size_t i = 0; i <= ResponseTable::kMaxBufferedResponses; ++i) {
    table_.AddResponse("k" + std::to_string(i), WithPayload("v"));
  }
  const std::string dropped = "  WARN|| vwm-be-test: Dropped buffered service proxy response: ";
  EXPECT_THAT(log_.Lines(), ElementsAre(dropped + "k0"));
  table_.AddPending("k0", Note());
  EXPECT_THAT(seen_, IsEmpty());
  table_.AddPending("k1", Note());
  EXPECT_THAT(seen_, ElementsAre("v"));
  log_.Clear();
  table_.AddPending("big", Note());
  table_.AddResponse("big", WithPayload(std::string(ResponseTable::kMaxBufferedBytes + 1, 'x')));
  EXPECT_EQ(seen_.back().size(), ResponseTable::kMaxBufferedBytes + 1)
      << "awaited, so not buffered";
  EXPECT_THAT(log_.Lines(), Not(Contains(dropped + "k2")));
  table_.AddResponse("half", WithPayload(std::string(ResponseTable::kMaxBufferedBytes / 2, 'x')));
  table_.AddResponse("half", WithPayload(std::string(ResponseTable::kMaxBufferedBytes / 2, 'x')));
  EXPECT_THAT(log_.Lines(), Not(Contains(dropped + "half"))) << "replaced, not added";
  table_.AddResponse("rest", WithPayload(std::string(ResponseTable::kMaxBufferedBytes / 2, 'x')));
  EXPECT_THAT(log_.Lines(), Contains(dropped + "half"));
  table_.AddPending("rest", Note());
  EXPECT_EQ(seen_.size(), 3u);
}

TEST_F(ResponseTableTest, ResponsesFromThreadsMeetRequestsFromTasks) {
  constexpr int kRequests = 400;
  std::atomic<int> fulfilled = 0;
  std::thread responder([&] {
    for (int i = 0; i < kRequests; ++i) table_.AddResponse(std::to_string(i), WithPayload("v"));
  });
  for (int i = kRequests - 1; i >= 0; --i) {
    table_.AddPending(std::to_string(i), [&](PluginServiceProxyResponse) { ++fulfilled; });
  }
  responder.join();
  EXPECT_EQ(fulfilled, kRequests);
}

#ifndef NDEBUG
TEST_F(ResponseTableTest, ACompletionMayNotCallTheTable) {
  table_.AddPending("a", [this](PluginServiceProxyResponse) { table_.Reserve("b"); });
  EXPECT_DEATH(table_.AddResponse("a", WithPayload("1")), "owner_");
}
#endif

}  // namespace
}  // namespace Kest::Client::Loot
