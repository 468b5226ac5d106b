#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <random>
#include <thread>

#include "host/clock/host_clock.h"
#include "host/clock/time_text.h"
#include "host/session/clock_driver.h"
#include "tests/support/cases.h"

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

constexpr int64_t kNew2030 = 1'893'456'000'000;  // 2030-01-01T00:00:00Z

TEST(TimeText, IsReadOrRefused) {
  Testing::ExpectEach<const char*, int64_t>(
      {{"the first", "1970-01-01T00:00:00Z", 0},
       {"a leap day", "2028-02-29T23:59:59.999Z", 1'835'481'599'999},
       {"one digit is tenths", "2030-01-01T00:00:00.5Z", kNew2030 + 500},
       {"two digits", "2030-01-01T00:00:00.05Z", kNew2030 + 50},
       {"the last", "9999-12-31T23:59:59.999Z", kLatestTime},
       {"before the first", "1969-12-31T23:59:59Z", -1},
       {"no such day", "2030-02-29T00:00:00Z", -1},
       {"no such month", "2030-13-01T00:00:00Z", -1},
       {"hour 24", "2030-01-01T24:00:00Z", -1},
       {"a leap second", "2030-01-01T00:00:60Z", -1},
       {"four digits", "2030-01-01T00:00:00.0000Z", -1},
       {"no digits", "2030-01-01T00:00:00.Z", -1},
       {"another zone", "2030-01-01T00:00:00+01:00", -1},
       {"no zone", "2030-01-01T00:00:00", -1},
       {"a sign", "+030-01-01T00:00:00Z", -1},
       {"more", "2030-01-01T00:00:00Z ", -1},
       {"nothing", "", -1}},
      [](const char* text) { return ParseTime(text).value_or(-1); });
}

TEST(TimeText, ReadsWhatItWrites) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 2000; ++round) {
    const int64_t time = static_cast<int64_t>(random() % (kLatestTime + 1));
    ASSERT_EQ(ParseTime(FormatTime(time)), time) << FormatTime(time);
  }
}

TEST(HostClock, StandsUntilItIsMovedAndNeverGoesBack) {
  HostClock clock({ClockMode::kFrozen, 1, kNew2030});
  const HostTime begin = clock.Elapsed();
  std::this_thread::sleep_for(milliseconds(3));
  EXPECT_EQ(clock.Now(), kNew2030);
  EXPECT_EQ(clock.Elapsed(), begin);
  EXPECT_EQ(clock.SystemTimeOf(begin), std::nullopt) << "time does not come by itself";
  for (const auto step : {HostTime(1'500), HostTime(1'500), HostTime(-9'000)}) {
    clock.MoveTo(clock.Elapsed() + step);
  }
  EXPECT_EQ(clock.Elapsed(), begin + HostTime(3'000));
  EXPECT_EQ(clock.Now(), kNew2030 + 3) << "parts of a millisecond add up";
  clock.Set({ClockMode::kFrozen, 1, 5});
  EXPECT_EQ(clock.Now(), 5);
  EXPECT_EQ(clock.Elapsed(), begin + HostTime(3'000));
  clock.Set({ClockMode::kScaled, 1e-9, {}});
  EXPECT_EQ(clock.Now(), 5) << "goes on from what it showed";
  clock.MoveTo(clock.Elapsed() + HostTime(9'000));
  EXPECT_EQ(clock.Now(), 5) << "a clock that runs is not moved";
}

TEST(HostClock, RunsAtItsOwnSpeed) {
  HostClock clock({ClockMode::kScaled, 1000, kNew2030});
  const HostTime begin = clock.Elapsed();
  const auto then = clock.SystemTimeOf(begin + std::chrono::seconds(30));
  ASSERT_TRUE(then);
  EXPECT_LT(*then, std::chrono::steady_clock::now() + milliseconds(31));
  // Some systems wake a thread early.
  while (std::chrono::steady_clock::now() < *then) std::this_thread::sleep_until(*then);
  EXPECT_GE(clock.Elapsed() + HostTime(1), begin + std::chrono::seconds(30));
  EXPECT_GE(clock.Now(), kNew2030 + 29'999);
  clock.Set({});
  EXPECT_LT(clock.Now(), kNew2030 / 2 * 3) << "the system's time";
}

// A scheduler and a thread of service events on a frozen clock.
class FrozenTest : public testing::Test {
 protected:
  FrozenTest() {
    scheduler_.SetOutsideEvents([this] { return events_.DeliverOne(); });
  }
  // Runs `work` as a task and waits for its end.
  void OnTask(const Scheduler::Work& work) {
    std::promise<void> over;
    scheduler_.Post({.name = "test", .work = [&] {
                       work();
                       over.set_value();
                     }});
    over.get_future().get();
  }
  void Outside(std::string text) {
    scheduler_.Post({.name = text, .work = [this, text] { Note(text); }, .isOutside = true});
  }
  void Later(int64_t delay, std::string text) {
    scheduler_.PostAfter(milliseconds(delay), {.name = text, .work = [this, text] {
                                                 Note(text);
                                                 for (int i = 0; i < 3; ++i) scheduler_.Yield();
                                                 Note(text + " end");
                                               }});
  }
  void Note(const std::string& text) {
    const MutexLock lock(mutex_);
    happened_.push_back(std::to_string(clock_.Now()) + " " + text);
  }

  HostClock clock_{{ClockMode::kFrozen, 1, 0}};
  Mutex mutex_;
  std::vector<std::string> happened_;
  Scheduler scheduler_{[](std::string_view, std::string_view text) { ADD_FAILURE() << text; },
                       clock_};
  ServiceEventThread events_{[this](const ServiceEventThread::Event& event) {
                               Note(event.name);
                               scheduler_.Post({.name = "", .work = [this] { Note("handled"); }});
                               scheduler_.Wake();
                             },
                             clock_};
  Timeline timeline_{[this] { return clock_.Now(); }};
  ClockDriver driver_{&clock_, &scheduler_, &events_, &timeline_};
};

TEST_F(FrozenTest, WhatFallsDueHappensInOrderAndToItsEnd) {
  OnTask([&] {
    events_.Post(milliseconds(25), {"event 25", ""});
    Later(30, "task 30");
    Later(10, "task 10");
    Later(20, "task 20");
    events_.Post(milliseconds(10), {"event 10", ""});
    Later(41, "too late");
    EXPECT_EQ(driver_.UntilNextDue(), milliseconds(10));
    EXPECT_TRUE(driver_.Advance(milliseconds(0)));
    EXPECT_THAT(happened_, ElementsAre());
    EXPECT_TRUE(driver_.Advance(milliseconds(40)));
    Note("advanced");
    EXPECT_EQ(driver_.UntilNextDue(), milliseconds(1));
  });
  EXPECT_THAT(happened_, ElementsAre("10 task 10", "10 task 10 end", "10 event 10", "10 handled",
                                     "20 task 20", "20 task 20 end", "25 event 25", "25 handled",
                                     "30 task 30", "30 task 30 end", "40 advanced"));
}

TEST_F(FrozenTest, WhatComesFromOutsideBeginsWhenTheTasksHaveSettled) {
  OnTask([&] {
    Outside("first");
    Outside("second");
    events_.Post(milliseconds(0), {"event", ""});
    scheduler_.Post({.name = "slow", .work = [this] {
                       std::this_thread::sleep_for(milliseconds(20));  // for others to be early
                       for (int i = 0; i < 5; ++i) {
                         scheduler_.WaitBegin("step");
                         scheduler_.Yield();
                         scheduler_.WaitEnd();
                       }
                       Note("slow end");
                     }});
    EXPECT_TRUE(scheduler_.WaitUntilSettled(milliseconds(10'000)));
    Note("settled");
  });
  OnTask(
      [&] { EXPECT_TRUE(scheduler_.WaitUntilQuiet(milliseconds(10'000), [] { return true; })); });
  EXPECT_THAT(happened_, ElementsAre("0 slow end", "0 event", "0 handled", "0 settled", "0 first",
                                     "0 second"));
}

TEST_F(FrozenTest, WaitingForWhatNeedsTimeEndsAtOnce) {
  Later(5, "late");
  const auto isBusy = [&](bool waitsForTime) {
    bool isQuiet = true;
    OnTask([&] {
      isQuiet = scheduler_.WaitUntilQuiet(
          milliseconds(20), [] { return true; }, [=] { return waitsForTime; });
    });
    return !isQuiet;
  };
  EXPECT_TRUE(isBusy(true));
  EXPECT_TRUE(isBusy(false)) << "within the limit";
}

TEST_F(FrozenTest, AClockThatRunsAgainLetsEverythingIn) {
  OnTask([&] {
    events_.Post(milliseconds(15), {"event", ""});
    Later(10, "task");
    Outside("request");
    EXPECT_EQ(driver_.Advance(milliseconds(kLatestTime + 1)).GetFailure().status, 400);
    driver_.Set({ClockMode::kScaled, 10, {}});
    EXPECT_EQ(driver_.Advance(milliseconds(1)).GetFailure().status, 409);
    EXPECT_TRUE(scheduler_.WaitUntilQuiet(milliseconds(10'000), [&] { return events_.Quiet(); }));
  });
  EXPECT_EQ(happened_.size(), 5u) << testing::PrintToString(happened_);
}

}  // namespace
}  // namespace Kest::Host
