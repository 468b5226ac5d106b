#include "plugin/host_services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plugin/once_promise.h"
#include "tests/support/fake_host.h"
#include "tests/support/log_capture.h"

namespace Kest::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HostServicesTest : public ::testing::Test {
 protected:
  HostServicesTest() { services_.Attach(host_.Services()); }
  void Ask(std::string_view url, HostServices* services) {
    HostRequest request;
    request.url = url;
    services->Request(request, [this](Maybe<Response> response) {
      responses_.push_back(response ? response.GetValue().body : response.GetFailure().text);
      if (throws_) throw std::runtime_error("full");
    });
  }
  void Ask(std::string_view url) {
    host_.RunTask([=, this] { Ask(url, &services_); });
  }

  LogCapture log_;
  EntryGate gate_;
  RuntimeCounters counters_;
  FakeHost host_;
  HostServices services_{gate_, counters_};
  std::vector<std::string> responses_;
  bool throws_ = true;  // completions, after they have noted their response
};

TEST_F(HostServicesTest, EachRequestEndsExactlyOnce) {
  host_.OnRequest("GET", "/now", FakeResponse{200, "1"});
  host_.OnRequest("GET", "/later", FakeResponse{200, "2", "", "", true});
  host_.RunTask([this] {
    Ask("/now", &services_);
    EXPECT_THAT(responses_, IsEmpty()) << "the response must not come from inside the call";
  });
  Ask("/later");
  throws_ = false;
  host_.RefuseEverything();
  Ask("/now");
  throws_ = true;
  EXPECT_THAT(responses_, ElementsAre("1", "The host did not take the request"));
  gate_.Close();
  for (int i = 0; i < 2; ++i) host_.RunTask([this] { services_.CancelAll(); });
  throws_ = false;
  Ask("/now");
  host_.ReleaseHeld();  // the host completes the cancelled request after all
  EXPECT_THAT(responses_,
              ElementsAre("1", "The host did not take the request", "Finalizing", "Finalizing"));
  const std::string thrown = " ERROR|| Request completion: full";
  EXPECT_THAT(log_.Lines(), ElementsAre(thrown, thrown));
}

TEST_F(HostServicesTest, TasksRunOnceAndMergedOnesAreDropped) {
  int runs = 0;
  auto promise = std::make_shared<OncePromise<Nothing>>();
  auto future = promise->GetFuture();
  EXPECT_EQ(services_.PostTask("a", [&] { ++runs; }), TaskPosting::kQueued);
  EXPECT_EQ(services_.PostTask("a", [promise = std::move(promise)] {}), TaskPosting::kMerged);
  EXPECT_EQ(future.get().GetFailure().text, "Finalizing") << "dropped at once, not leaked";
  EXPECT_EQ(services_.PostTask("b", [] { throw std::runtime_error("broken task"); }),
            TaskPosting::kQueued);
  host_.RunUntilIdle();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(services_.PostTask("b", [] { throw 7; }), TaskPosting::kQueued);
  host_.RunUntilIdle();
  EXPECT_THAT(log_.Lines(),
              ElementsAre(" ERROR|| Task: broken task", " ERROR|| Task: unknown exception"));
  EXPECT_EQ(services_.PostTask("c", [&] { ++runs; }), TaskPosting::kQueued);
  gate_.Close();
  EXPECT_EQ(services_.PostTask("d", [&] { ++runs; }), TaskPosting::kRefused);
  host_.RunUntilIdle();
  EXPECT_EQ(runs, 1) << "a task whose turn comes after the end";
}

TEST_F(HostServicesTest, AnEventReachesTheLatestHandlerOfItsName) {
  std::vector<std::string> seen;
  host_.RunTask([&] {
    services_.Subscribe("g", [](std::string_view) { FAIL() << "let in through a closed gate"; });
    services_.Subscribe("e", [](std::string_view) { FAIL() << "replaced"; });
    services_.Subscribe("e", [&](std::string_view body) {
      services_.Unsubscribe("e");  // from inside its own delivery
      seen.emplace_back(body);
      throw std::bad_alloc();
    });
  });
  for (const char* body : {"1", "2"}) {
    host_.DeliverEvent("e", body);
    host_.RunUntilIdle();
  }
  EXPECT_THAT(seen, ElementsAre("1"));
  EXPECT_EQ(counters_.eventsReceived, 1u);
  EXPECT_THAT(log_.Lines(), ElementsAre(" ERROR|| Event delivery: Out of memory"));
  gate_.Close();
  host_.DeliverEvent("g", "3");
  host_.RunUntilIdle();
}

TEST_F(HostServicesTest, ARefusedSubscriptionLeavesNothing) {
  host_.RefuseEverything();
  host_.RunTask([this] {
    EXPECT_FALSE(services_.Subscribe("f", [](std::string_view) {}));
    services_.Unsubscribe("f");
  });
  EXPECT_THAT(host_.Printed({Action::kSubscribe, Action::kUnsubscribe}),
              ElementsAre("subscribe f"));
}

TEST_F(HostServicesTest, WithoutAHostEverythingFailsQuietly) {
  HostServices alone(gate_, counters_);
  throws_ = false;
  Ask("/now", &alone);
  EXPECT_THAT(responses_, ElementsAre("Finalizing"));
  EXPECT_FALSE(alone.Subscribe("e", [](std::string_view) {}));
  EXPECT_FALSE(alone.Publish("/p", ResourceEventType::kUpdate, "1"));
  EXPECT_EQ(alone.PostTask("t", [] {}), TaskPosting::kRefused);
  alone.Unsubscribe("e");
  alone.Yield();
}

}  // namespace
}  // namespace Kest::Testing
