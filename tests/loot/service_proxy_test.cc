#include "client/service_proxy.h"

#include <thread>

#include "tests/loot/calls_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kUuidEvent = "OnServiceProxyUuidEvent";
constexpr const char* kMethodRequests = "/tav-login/v1/service-proxy-method-requests";
constexpr const char* kUnreadable =
    " ERROR|| vwm-be-test: Couldn't convert SVDS DTO Kest::Client::Loot::TestRecord to C++ from ";

class ServiceProxyTest : public CallsTest {
 protected:
  ServiceProxyTest() {
    host_.RunTask([this] { proxy_.Start(); });
  }

  template <class R>
  void Note(const Maybe<R>& result) {
    if constexpr (std::is_same_v<R, TestRecord>) {
      seen_.push_back(result ? result.GetValue().name : result.GetFailure().text);
    } else {
      seen_.push_back(result ? "done" : result.GetFailure().text);
    }
  }
  // Both start a call in a task; `seen_` gets its value or its failure message when it ends.
  template <class R = TestRecord, class... A>
  void Call(std::string_view method, const A&... arguments) {
    host_.RunTask([=, this] {
      const std::function<void(R)> use = [this](const R& result) { Note<R>(result); };
      const auto done = proxy_.InvokeAndWait<R>("loot", method, InOnePart(use), arguments...);
      if (!done) Note<R>(done.GetFailure());
    });
  }
  template <class R = TestRecord, class... A>
  void CallSession(std::string_view method, const A&... arguments) {
    host_.RunTask([=, this] { Note(proxy_.InvokeSession<R>("loot", method, arguments...)); });
  }
  // The call's failure message; it stands in `failure_` when the start of the call must wait.
  std::string CallByMethod() {
    failure_ = "not returned";
    host_.RunTask([this] {
      const std::function<void(TestRecord)> use = [this](const TestRecord& r) {
        Note<TestRecord>(r);
      };
      failure_ = proxy_.InvokeAsync<TestRecord>("loot", "m", "key", true, InOnePart(use),
                                                [this](const Failure& f) { Note<TestRecord>(f); });
    });
    return failure_;
  }
  void Respond(std::string_view event, const std::string& uuid, const std::string& name) {
    host_.DeliverEvent(
        event, R"({"uuid":")" + uuid +
                   R"(","serviceName":"loot","methodName":"m","payload":"{\"name\":\")" + name +
                   R"(\"}","status":"OK","error":""})");
    host_.RunUntilIdle();
  }
  void SetReply(std::string_view method, ServiceReply reply) {
    host_.OnService("loot", method, [reply](const std::string&) { return reply; });
  }

  std::string failure_;
};

TEST_F(ServiceProxyTest, EachCallGetsTheLatestResponseOfItsOwnUuid) {
  Respond(kUuidEvent, "uuid-1", "of another plugin: no request is being sent");
  Call("m");
  Call("m");
  Respond(kUuidEvent, "uuid-2", "second");
  Respond(kUuidEvent, "unknown", "unused");
  Respond(kUuidEvent, "uuid-1", "first");
  Call("m");
  EXPECT_THAT(seen_, ElementsAre("second", "first"));
  Respond(kUuidEvent, "uuid-3", "third");
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests",
                  FakeResponse{200, "\"held\"", "", "", true});
  Call("m");
  Respond(kUuidEvent, "held", "stale");
  Respond(kUuidEvent, "held", "before the host has named the request");
  EXPECT_EQ(seen_.size(), 3u) << "it is not known yet whose response it is";
  host_.ReleaseHeld();
  Respond(kUuidEvent, "held", "again");
  EXPECT_THAT(seen_, ElementsAre("second", "first", "third", StartsWith("before")));
}

TEST_F(ServiceProxyTest, ResultsAreHandledInTheOrderOfArrivalWhicheverTaskIsResumedFirst) {
  const auto arrive = [this](const std::string& uuid, const char* payload = "{}") {
    host_.DeliverEvent(kUuidEvent, R"({"uuid":")" + uuid + R"(","payload":")" + payload + "\"}");
  };
  host_.HoldTasks();  // also those in which asynchronous results are handled
  for (const char* name : {"first", "second"}) {
    host_.RunTask([=, this] {
      const std::function<void(Nothing)> use = [=, this](Nothing) { seen_.emplace_back(name); };
      EXPECT_TRUE(proxy_.InvokeAndWait<Nothing>("loot", "m", InOnePart(use)));
    });
  }
  host_.RunTask([this] {
    const std::function<void(Nothing)> use = [this](Nothing) { seen_.emplace_back("posted"); };
    proxy_.InvokeAsync<Nothing>("loot", "m", {}, false, InOnePart(use), [](const Failure&) {});
  });
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests",
                  FakeResponse{200, "\"held\"", "", "", true});
  Call<Nothing>("m");
  for (const char* uuid : {"uuid-3", "uuid-2", "held", "uuid-1"}) arrive(uuid);
  host_.RunUntilIdle();
  EXPECT_THAT(seen_, ElementsAre("posted", "second")) << "the rest may change the same data";
  host_.ReleaseHeld();
  host_.RunHeldTasks();
  EXPECT_THAT(seen_, ElementsAre("posted", "second", "done", "first"));
}

// "name:part" in the order in which parts are run, and what runs between them.
TEST_F(ServiceProxyTest, ALongResultIsReadWhereItArrivesAndUsedInParts) {
  std::thread::id reader;
  std::thread::id task;
  const auto inParts = [&, this](const std::string& name, int count) -> Preparation<TestRecord> {
    return [=, &reader, &task, this](const TestRecord& record) -> Parts {
      if (record.name == "bad") throw std::runtime_error("not to be made");
      reader = std::this_thread::get_id();
      return [=, &task, part = 0, this]() mutable {
        task = std::this_thread::get_id();
        seen_.push_back(name + ":" + std::to_string(++part));
        services_.PostTask("other", [this] { seen_.emplace_back("other"); });
        return part == count;
      };
    };
  };
  const auto fail = [this](const Failure& failure) { seen_.push_back(failure.text); };
  host_.HoldTasks();
  for (const char* name : {"a", "b"}) {
    host_.RunTask([=, this] {
      proxy_.InvokeAsync<TestRecord>("loot", "m", {}, false, inParts(name, 2), fail);
    });
  }
  for (const auto& [uuid, name] : {std::pair("uuid-1", "good"), std::pair("uuid-2", "bad")}) {
    Respond(kUuidEvent, uuid, name);
  }
  host_.RunHeldTasks();
  EXPECT_THAT(seen_, ElementsAre("a:1", "other", "a:2", "not to be made", "other"));
  EXPECT_NE(reader, task);
  seen_.clear();
  const auto wait = [&](const char* name, int parts) {
    host_.RunTask([=, this] {
      const auto done = proxy_.InvokeAndWait<TestRecord>("loot", "m", inParts(name, parts));
      Note<Nothing>(done);
    });
  };
  wait("c", 2);
  wait("d", 1);
  for (const char* uuid : {"uuid-4", "uuid-3"}) Respond(kUuidEvent, uuid, "good");
  EXPECT_THAT(seen_, ElementsAre("d:1", "done", "c:1", "c:2", "done")) << "by the task that waits";
}

TEST_F(ServiceProxyTest, TheEndCutsAResultShortBetweenItsParts) {
  host_.RunTask([this] {
    const Maybe<Nothing> done = proxy_.InvokeAndWait<Nothing>(
        "loot", "m",
        [this](Nothing) -> Parts { return [this] { return seen_.emplace_back("part").empty(); }; });
    Note(done);
  });
  services_.PostTask("stop", [this] {
    while (seen_.size() < 3) services_.Yield();
    gate_.Close();
    proxy_.Finalise();
    services_.CancelAll();
  });
  Respond(kUuidEvent, "uuid-1", "good");
  EXPECT_EQ(seen_.back(), "Finalizing");
}

TEST_F(ServiceProxyTest, AResponseThatCannotBeReadFailsItsRequest) {
  Call("m");
  Call("m");
  host_.DeliverEvent(kUuidEvent, "{\"uuid\":\"uuid-2\",\"payload\":\"\xFF\"}");
  host_.RunUntilIdle();
  EXPECT_THAT(seen_, ElementsAre(Not(IsEmpty()))) << "the other one still waits";
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests",
                  FakeResponse{200, "\"held\"", "", "", true});
  Call("m");
  host_.DeliverEvent(kUuidEvent, "torn");
  host_.RunUntilIdle();
  host_.ReleaseHeld();
  EXPECT_EQ(seen_.back(), "Response lost") << "it may have been the response";
  EndPlugin();  // the one that waits must not outlive the test
}

TEST_F(ServiceProxyTest, OneMethodBasedCallAtATimeAlsoWhileItIsBeingSent) {
  host_.OnRequest("POST", kMethodRequests, FakeResponse{204, "", "", "", true});
  EXPECT_EQ(CallByMethod(), "not returned");
  EXPECT_EQ(CallByMethod(), "Request already in flight");
  EXPECT_THAT(Requests(), ElementsAre(std::string("request POST ") + kMethodRequests +
                                      R"( {"serviceName":"loot","methodName":"m",)"
                                      R"("requestKey":"key","flag":true,"args":[]})"));
  host_.ReleaseHeld();
  EXPECT_EQ(failure_, "");
  EXPECT_EQ(CallByMethod(), "Request already in flight") << "until its response has come";
  EXPECT_THAT(log_.Lines(), Contains(" ERROR|| vwm-be-test: Could not invoke service proxy as "
                                     "request is already in flight"));
  Respond("OnServiceProxyMethodEvent", "", "by method");
  EXPECT_THAT(seen_, ElementsAre("by method"));
  host_.OnRequest("POST", kMethodRequests, FakeResponse{500, "", "no"});
  for (int i = 0; i < 2; ++i) {  // a failed start must not keep the key
    EXPECT_EQ(CallByMethod(), std::string("Error response for POST ") + kMethodRequests + ": no");
  }
}

TEST_F(ServiceProxyTest, FailuresComeWithTheirTexts) {
  const std::pair<const char*, ServiceReply> kResponses[] = {{"error", {"{}", "denied"}},
                                                             {"torn", {"[1"}},
                                                             {"void", {""}},
                                                             {"number", {"7"}},
                                                             {"record", {R"({"name":"at once"})"}}};
  for (const auto& [method, reply] : kResponses) SetReply(method, reply);
  Call("error");
  Call("torn");
  Call<Nothing>("void");
  Call("m", UnregisteredRecord{});
  CallSession("error");
  CallSession("number");
  CallSession("record", 1, 2);
  CallSession<Nothing>("m", UnregisteredRecord{});
  EXPECT_THAT(
      seen_,
      ElementsAre("denied", "Missing a comma or ']' after an array element.", "done",
                  "Failed to convert type Kest::Client::Loot::UnregisteredRecord to "
                  "BindingProperty for serialization",
                  "Error response for POST /tav-login/v1/session/invoke: denied",
                  StartsWith("Error converting response for POST /tav-login/v1/session/invoke: "),
                  "at once", StartsWith("Couldn't convert SVDS call parameters: ")));
  for (const char* body : {"[1", "7"}) {
    EXPECT_THAT(log_.Lines(), Contains(std::string(kUnreadable) + body));
  }
  ASSERT_EQ(Requests().size(), 6u) << "what does not convert must not be sent";
  EXPECT_THAT(Requests()[5],
              EndsWith(R"({"serviceName":"loot","methodName":"record","args":[1,2]})"));
}

TEST_F(ServiceProxyTest, AnAsynchronousResponseNeedsAHandler) {
  Respond("OnServiceProxyAsyncEvent", "u", "lost");
  EXPECT_THAT(log_.Lines(), ElementsAre(" ERROR|| vwm-be-test: Could not find registered handler "
                                        "for async service proxy event loot.m"));
  proxy_.SubscribeAsync("loot", "m",
                        [&](ArrivedResponse r) { seen_.push_back(r.response.payload); });
  Respond("OnServiceProxyAsyncEvent", "u", "1");
  Respond("OnServiceProxyAsyncEvent", "u", "2");
  EXPECT_THAT(seen_, ElementsAre(R"({"name":"1"})", R"({"name":"2"})"));
}

TEST_F(ServiceProxyTest, PlatformMessagesReachTheirSubtopicAsTasks) {
  host_.RunTask([this] {
    for (const char* subtopic : {"com.x", "com.y"}) {
      proxy_.SubscribeSvds(subtopic, [this, subtopic](const PluginSvdsEvent& event) {
        proxy_.SubscribeSvds(subtopic, [](const PluginSvdsEvent&) {});
        services_.Yield();  // only tasks may
        seen_.push_back(subtopic + std::string(event.body.FindMember("a")->AsString()));
      });
    }
  });
  for (const char* value : {"b", "replaced"}) {
    host_.DeliverEvent(
        "OnSvdsEvent_com.x",
        R"({"subtopic":"com.x","typeName":"com.x","body":{"a":")" + std::string(value) + "\"}}");
    host_.RunUntilIdle();
  }
  EXPECT_THAT(seen_, ElementsAre("com.xb"));
  host_.DeliverEvent("OnSvdsEvent_com.x", "torn");
  host_.RunUntilIdle();
  EXPECT_THAT(log_.Lines(),
              ElementsAre(StartsWith(" ERROR|| vwm-be-test: Could not read OnSvdsEvent_com.x: ")));
}

TEST_F(ServiceProxyTest, TheEndCutsEveryCallShort) {
  Call("pending");
  host_.OnRequest("POST", "/tav-login/v1/service-proxy-uuid-requests",
                  FakeResponse{200, "\"uuid-9\"", "", "", true});
  Call("starting");
  EndPlugin();
  EXPECT_THAT(seen_, ElementsAre("Finalizing", "Finalizing"));
  host_.ReleaseHeld();
  Call("late");
  CallSession("late");
  EXPECT_THAT(seen_, ElementsAre("Finalizing", "Finalizing", "Finalizing", "Finalizing"));
}

// ---- ResponseTable ------------------------------------------------------------------------------

class ResponseTableTest : public CallsTest {
 protected:
  static constexpr size_t kHalf = ResponseTable::kMaxBufferedBytes / 2;

  void Add(const std::string& key, std::string payload) {
    PluginServiceProxyResponse response;
    response.uuid = key;
    response.payload = std::move(payload);
    table_.AddUuidResponse(std::move(response));
  }
  std::string Await(const std::string& key, ResponseTable::Completion completion) {
    const auto follow = [this] { follows_ += table_.IsFinalising() ? 0 : 1; };  // takes the lock
    return table_.AddPending(key, ResponseTable::MakePending({std::move(completion), follow}));
  }
  ResponseTable::Completion Note() {
    return [this](ArrivedResponse r) { seen_.push_back(r.response.payload); };
  }

  ResponseTable table_{name_};
  std::atomic<int> follows_ = 0;  // responses from threads count as well
  std::optional<ResponseTable::Sending> sending_{std::in_place, table_, ""};
};

TEST_F(ResponseTableTest, ACompletionThatThrowsGetsTheTextOnceAndBlocksNobody) {
  Await("a", [&](const ArrivedResponse& r) {
    seen_.push_back("a:" + r.response.error);
    throw std::runtime_error("full");
  });
  Await("b", Note());
  Add("a", "1");
  Add("b", "2");
  Add("a", "3");
  EXPECT_THAT(seen_, ElementsAre("a:", "a:full", "2"));
}

TEST_F(ResponseTableTest, WhatFollowsACompletionRunsOnceWithoutTheLock) {
  Add("early", "1");
  for (const char* key : {"early", "awaited", "torn"}) EXPECT_EQ(Await(key, Note()), "");
  Add("awaited", "2");
  table_.AddUnreadable(R"({"uuid":"torn")", "no text");
  EXPECT_THAT(seen_, ElementsAre("1", "2", ""));
  EXPECT_EQ(follows_, 3);
}

TEST_F(ResponseTableTest, AResponseWaitsForTheRequestsThatWereBeingSentWhenItCame) {
  Add("foreign", "1");
  ResponseTable::Sending later(table_, "");
  EXPECT_TRUE(table_.HasUnclaimedBefore(2));
  sending_.reset();
  EXPECT_FALSE(table_.HasUnclaimedBefore(2)) << "it came before the other was sent";
  Add("unknown", "2");
  EXPECT_TRUE(table_.HasUnclaimedBefore(3));
}

TEST_F(ResponseTableTest, KeepsWithinItsBoundsTheOldestGoingFirst) {
  for (size_t i = 0; i <= ResponseTable::kMaxBufferedResponses + 1; ++i) {
    Add("k" + std::to_string(i), "v");
  }
  const std::string dropped = "  WARN|| vwm-be-test: Dropped buffered service proxy response: ";
  EXPECT_THAT(log_.Lines(), ElementsAre(dropped + "k0")) << "one line for all in a row";
  EXPECT_EQ(Await("k0", Note()), "Response lost");
  for (const char* key : {"k2", "big"}) EXPECT_EQ(Await(key, Note()), "");
  EXPECT_THAT(seen_, ElementsAre("v")) << "the last has not come";
  log_.Clear();
  Add("big", std::string(2 * kHalf + 1, 'x'));
  EXPECT_EQ(seen_.back().size(), 2 * kHalf + 1) << "awaited, so not buffered";
  EXPECT_THAT(log_.Lines(), Not(Contains(dropped + "k3")));
  Add("half", std::string(kHalf, 'x'));
  Add("half", std::string(kHalf, 'x'));
  EXPECT_THAT(log_.Lines(), Not(Contains(dropped + "half"))) << "replaced, not added";
  Add("rest", std::string(kHalf, 'x'));
  EXPECT_THAT(log_.Lines(), Contains(dropped + "k3"));
  EXPECT_EQ(Await("half", Note()), "Response lost");
  Await("rest", Note());
  EXPECT_EQ(seen_.size(), 3u);
}

TEST_F(ResponseTableTest, ResponsesFromThreadsMeetRequestsFromTasks) {
  constexpr int kRequests = 400;
  std::atomic<int> fulfilled = 0;
  std::thread responder([&] {
    for (int i = 0; i < kRequests; ++i) Add(std::to_string(i), "v");
  });
  for (int i = kRequests - 1; i >= 0; --i) {
    Await(std::to_string(i), [&](const ArrivedResponse&) { ++fulfilled; });
  }
  responder.join();
  EXPECT_EQ(fulfilled, kRequests);
}

#ifndef NDEBUG
TEST_F(ResponseTableTest, ACompletionMayNotCallTheTable) {
  Await("a", [this](const ArrivedResponse&) { table_.HasUnclaimedBefore(1); });
  EXPECT_DEATH(Add("a", "1"), "owner_");
}
#endif

}  // namespace
}  // namespace Kest::Client::Loot
