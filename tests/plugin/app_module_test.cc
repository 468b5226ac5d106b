#include "plugin/app_module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plugin/once_promise.h"
#include "tests/support/fake_host.h"

namespace Kest::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Result = Maybe<int32_t>;

class AppModuleTest : public ::testing::Test {
 protected:
  AppModuleTest() { services_.Attach(host_.Services()); }

  EntryGate gate_;
  RuntimeCounters counters_;
  FakeHost host_;
  HostServices services_{gate_, counters_};
  AppModule module_{services_};
};

TEST_F(AppModuleTest, WhatIsReadyIsNotAnnounced) {
  std::promise<Result> promise;
  promise.set_value(7);
  EXPECT_EQ(module_.Await(promise.get_future()).GetValue(), 7);
  EXPECT_THAT(host_.Waits(), IsEmpty());
}

TEST_F(AppModuleTest, AWaitIsAnnouncedOnceAndLetsOthersRun) {
  OncePromise<int32_t> promise;
  int32_t seen = 0;
  host_.RunTask([&] { seen = module_.Await(promise.GetFuture()).GetValue(); });
  EXPECT_EQ(seen, 0);
  EXPECT_THAT(host_.Waits(), ElementsAre(HasSubstr("MaybeType<")));
  host_.RunTask([&] { promise.Set(8); });
  EXPECT_EQ(seen, 8);
  EXPECT_THAT(host_.Waits(), ElementsAre(::testing::StartsWith("Wait: future<"), ""));
}

TEST_F(AppModuleTest, ADeferredFutureIsRunByTheWait) {
  auto deferred = std::async(std::launch::deferred, [] { return Result(9); });
  EXPECT_EQ(module_.Await(std::move(deferred)).GetValue(), 9);
}

TEST(AppModuleDeathTest, AFutureThatCannotGiveAValueEndsTheProcess) {
  EntryGate gate;
  RuntimeCounters counters;
  HostServices services(gate, counters);
  AppModule module(services);
  constexpr char kReport[] =
      "Caught std::future_error in AppModule::Await: \\([0-9]+\\) "
      "(.|\n)*Expression: ALE-6D828C10";
  EXPECT_DEATH(static_cast<void>(module.Await(std::future<Result>())), kReport);
  EXPECT_DEATH(
      {
        auto broken = std::promise<Result>().get_future();
        static_cast<void>(module.Await(std::move(broken)));
      },
      kReport);
}

TEST(OncePromise, IsKeptOnceWhateverHappens) {
  auto promise = std::make_unique<OncePromise<int32_t>>();
  auto kept = promise->GetFuture();
  EXPECT_TRUE(promise->Set(1));
  EXPECT_FALSE(promise->Set(2));
  EXPECT_EQ(kept.get().GetValue(), 1);
  promise = std::make_unique<OncePromise<int32_t>>();
  auto dropped = promise->GetFuture();
  promise.reset();
  EXPECT_EQ(dropped.get().GetFailure().text, "Finalizing");
}

}  // namespace
}  // namespace Kest::Testing
