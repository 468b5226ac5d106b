#include "plugin/app_module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plugin/once_promise.h"
#include "tests/support/fake_host.h"

namespace Kest::Testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Result = Maybe<int32_t>;

class AppModuleTest : public ::testing::Test {
 protected:
  EntryGate gate_;
  RuntimeCounters counters_;
  HostServices services_{gate_, counters_};
  AppModule module_{services_};
};
using AppModuleDeathTest = AppModuleTest;

TEST_F(AppModuleTest, OnlyAWaitIsAnnouncedAndLetsOthersRun) {
  FakeHost host;
  services_.Attach(host.Services());
  std::promise<Result> ready;
  ready.set_value(7);
  EXPECT_EQ(module_.Await(ready.get_future()).GetValue(), 7);
  auto deferred = std::async(std::launch::deferred, [] { return Result(9); });
  EXPECT_EQ(module_.Await(std::move(deferred)).GetValue(), 9) << "run by the wait itself";
  const auto waits = [&] { return host.Printed({Action::kWait, Action::kWaitEnd}); };
  EXPECT_THAT(waits(), ElementsAre());
  OncePromise<int32_t> promise;
  int32_t seen = 0;
  host.RunTask([&] { seen = module_.Await(promise.GetFuture()).GetValue(); });
  const auto begin = StartsWith("wait Wait: future<Kest::MaybeType<");
  EXPECT_THAT(waits(), ElementsAre(begin));
  host.RunTask([&] { promise.Set(8); });
  EXPECT_EQ(seen, 8);
  EXPECT_THAT(waits(), ElementsAre(begin, "wait over"));
}

TEST_F(AppModuleDeathTest, AFutureThatCannotGiveAValueEndsTheProcess) {
  for (const bool isBroken : {false, true}) {
    std::future<Result> future;
    if (isBroken) future = std::promise<Result>().get_future();
    EXPECT_DEATH(static_cast<void>(module_.Await(std::move(future))),
                 AllOf(HasSubstr("Caught std::future_error in AppModule::Await: ("),
                       HasSubstr("\nExpression: ALE-6D828C10")));
  }
}

TEST(OncePromise, IsKeptExactlyOnce) {
  auto promise = std::make_unique<OncePromise<int32_t>>();
  auto kept = promise->GetFuture();
  EXPECT_TRUE(promise->Set(1));
  EXPECT_FALSE(promise->Set(2));
  EXPECT_EQ(kept.get().GetValue(), 1);
  auto dropped = OncePromise<int32_t>().GetFuture();
  EXPECT_EQ(dropped.get().GetFailure().text, "Finalizing");
}

}  // namespace
}  // namespace Kest::Testing
