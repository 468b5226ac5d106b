#include "host/scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <ctime>
#include <future>
#include <random>
#include <stdexcept>
#include <thread>

namespace Kest::Host {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

// A scheduler and the order in which things happened on it.
class SchedulerTest : public testing::Test {
 protected:
  void Post(std::string name, Scheduler::Work work) {
    ASSERT_EQ(scheduler_.Post({.name = std::move(name), .work = std::move(work)}),
              Scheduler::Posted::kQueued);
  }
  // Keeps the scheduler's thread until the answer is called, so that tasks pile up.
  std::function<void()> Hold() {
    auto gate = std::make_shared<std::promise<void>>();
    auto held = std::make_shared<std::promise<void>>();
    Post("hold", [=] {
      held->set_value();
      gate->get_future().wait();
    });
    held->get_future().wait();
    return [gate] { gate->set_value(); };
  }
  void Drain() {
    std::promise<bool> quiet;
    Post("drain", [&] {
      quiet.set_value(scheduler_.WaitUntilQuiet(milliseconds(10'000), [] { return true; }));
    });
    EXPECT_TRUE(quiet.get_future().get());
  }

  std::vector<std::string> happened_;  // on the scheduler's thread until Drain
  std::vector<std::string> failures_;
  Scheduler scheduler_{[this](std::string_view task, std::string_view text) {
    failures_.push_back(std::string(task) + ": " + std::string(text));
  }};
};

TEST_F(SchedulerTest, AWaitingTaskLetsOthersRunAndKeepsItsStack) {
  bool released = false;
  Post("waiter", [&] {
    const std::string local = "kept";
    happened_.push_back("waits");
    while (!released) scheduler_.Yield();
    happened_.push_back(local);
  });
  Post("other", [&] {
    happened_.push_back("other");
    released = true;
  });
  Drain();
  EXPECT_THAT(happened_, ElementsAre("waits", "other", "kept"));
}

TEST_F(SchedulerTest, MergesOnlyWaitingTasksOfOneOwnerAndName) {
  const int ownerA = 0;
  const int ownerB = 0;
  const auto release = Hold();
  struct Case {
    const char* why;
    const void* owner;
    const char* name;
    bool merge;
    Scheduler::Posted expected;
  };
  const Case kCases[] = {
      {"the first waits", &ownerA, "notify", true, Scheduler::Posted::kQueued},
      {"the second is stood for", &ownerA, "notify", true, Scheduler::Posted::kMerged},
      {"another name", &ownerA, "notify2", true, Scheduler::Posted::kQueued},
      {"another owner", &ownerB, "notify", true, Scheduler::Posted::kQueued},
      {"does not ask for it", &ownerA, "notify", false, Scheduler::Posted::kQueued}};
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(scheduler_.Post({.name = c.name,
                               .work = [this, c] { happened_.push_back(c.why); },
                               .owner = c.owner,
                               .merge = c.merge}),
              c.expected);
  }
  release();
  Drain();
  EXPECT_THAT(happened_, ElementsAre("the first waits", "another name", "another owner",
                                     "does not ask for it"));
}

TEST_F(SchedulerTest, ATaskThatHasBegunStandsForNoOther) {
  int runs = 0;
  Scheduler::Task again{.name = "n", .work = [&] { ++runs; }, .owner = this, .merge = true};
  Scheduler::Task first = again;
  first.work = [&] {
    ++runs;
    EXPECT_EQ(scheduler_.Post(again), Scheduler::Posted::kQueued);
    scheduler_.Yield();
  };
  scheduler_.Post(first);
  Drain();
  EXPECT_EQ(runs, 2);
}

TEST_F(SchedulerTest, DropForgetsWhatHasNotBegun) {
  const auto release = Hold();
  for (const void* owner : {static_cast<const void*>(this), static_cast<const void*>(&happened_)}) {
    const std::string name = owner == this ? "dropped" : "kept";
    const Scheduler::Work work = [this, name] { happened_.push_back(name); };
    scheduler_.Post({.name = name, .work = work, .owner = owner});
    scheduler_.PostAfter(milliseconds(1), {.name = name, .work = work, .owner = owner});
  }
  scheduler_.Drop(this);
  release();
  Drain();
  EXPECT_THAT(happened_, ElementsAre("kept", "kept"));
}

TEST_F(SchedulerTest, DelayedTasksComeInTheOrderTheyAreDue) {
  for (const int delay : {30, 10, 20, 10}) {
    scheduler_.PostAfter(milliseconds(delay), {.name = "late", .work = [this, delay] {
                                                 happened_.push_back(std::to_string(delay));
                                               }});
  }
  Drain();
  EXPECT_THAT(happened_, ElementsAre("10", "10", "20", "30"));
}

TEST_F(SchedulerTest, AFailedTaskIsNamedAndTheOthersGoOn) {
  Post("bad", [] { throw std::runtime_error("broken"); });
  Post("good", [&] { happened_.push_back("good"); });
  Drain();
  EXPECT_THAT(failures_, ElementsAre("bad: broken"));
  EXPECT_THAT(happened_, ElementsAre("good"));
}

TEST_F(SchedulerTest, ShowsWhatWaitsAndForWhat) {
  Scheduler::Report report;
  bool released = false;
  Post("craft", [&] {
    scheduler_.WaitBegin("Wait: future<x>");
    while (!released) scheduler_.Yield();
    scheduler_.WaitEnd();
  });
  Post("look", [&] {
    report = scheduler_.Describe();
    released = true;
  });
  Drain();
  ASSERT_EQ(report.running.size(), 2u);
  EXPECT_EQ(report.running[0].name, "craft");
  EXPECT_EQ(report.running[0].waitLabel, "Wait: future<x>");
  EXPECT_EQ(report.running[1].waitLabel, "");
}

TEST_F(SchedulerTest, QuietWaitsForQueuedDelayedRunningAndOutside) {
  std::atomic<bool> outside = false;
  std::promise<std::pair<bool, bool>> results;
  Post("watch", [&] {
    const auto isQuiet = [&] { return outside.load(); };
    const bool early = scheduler_.WaitUntilQuiet(milliseconds(20), isQuiet);
    scheduler_.PostAfter(milliseconds(5), {.name = "late", .work = [&] {
                                             scheduler_.Yield();
                                             happened_.push_back("late");
                                           }});
    outside = true;
    const bool later = scheduler_.WaitUntilQuiet(milliseconds(10'000), isQuiet);
    happened_.push_back("quiet");
    results.set_value({early, later});
  });
  EXPECT_EQ(results.get_future().get(), std::make_pair(false, true));
  EXPECT_THAT(happened_, ElementsAre("late", "quiet"));
}

TEST_F(SchedulerTest, AnswerFromAnotherThreadIsSeenWithoutBurningTheProcessor) {
  std::atomic<bool> answered = false;
  std::promise<void> seen;
  Post("await", [&] {
    while (!answered) scheduler_.Yield();
    seen.set_value();
  });
  const std::clock_t before = std::clock();
  std::this_thread::sleep_for(milliseconds(300));
  const double processorSeconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  EXPECT_LT(processorSeconds, 0.15);  // a loop that never sleeps takes all of the 0.3 s
  answered = true;
  scheduler_.Wake();
  seen.get_future().wait();
}

TEST_F(SchedulerTest, EveryTaskPostedFromManyThreadsRunsOnceAlsoWhenItYields) {
  constexpr int kThreads = 4;
  constexpr int kTasks = 500;
  std::vector<int> runs(kThreads * kTasks, 0);  // touched on the scheduler's thread only
  std::vector<std::thread> posters;
  for (int t = 0; t < kThreads; ++t) {
    posters.emplace_back([&, t] {
      std::mt19937 random(301 + t);
      for (int i = 0; i < kTasks; ++i) {
        const auto yields = random() % 3;
        scheduler_.Post({.name = "t", .work = [&, t, i, yields] {
                           for (unsigned y = 0; y < yields; ++y) scheduler_.Yield();
                           ++runs[t * kTasks + i];
                         }});
      }
    });
  }
  for (std::thread& poster : posters) poster.join();
  Drain();
  EXPECT_THAT(runs, testing::Each(1));
}

TEST_F(SchedulerTest, EndRunsWhatIsQueuedAndRefusesWhatComes) {
  const auto release = Hold();
  Post("queued", [&] {
    scheduler_.Yield();
    happened_.push_back("queued");
  });
  scheduler_.PostAfter(milliseconds(60'000), {.name = "never", .work = [] { FAIL(); }});
  scheduler_.Close();
  EXPECT_EQ(scheduler_.Post({.name = "late", .work = [] { FAIL(); }}), Scheduler::Posted::kRefused);
  release();
  EXPECT_TRUE(scheduler_.End());
  EXPECT_THAT(happened_, ElementsAre("queued"));
}

}  // namespace
}  // namespace Kest::Host
