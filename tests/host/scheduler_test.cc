#include "host/tasks/scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <ctime>
#include <future>
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
  // Keeps the scheduler's thread until the returned function is called, so that tasks pile up.
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

  void Note(std::string text) { happened_.push_back(std::move(text)); }

  std::vector<std::string> happened_;  // on the scheduler's thread until Drain
  std::vector<std::string> failures_;
  Scheduler scheduler_{[this](std::string_view task, std::string_view text) {
    failures_.push_back(std::string(task) + ": " + std::string(text));
  }};
};

TEST_F(SchedulerTest, AWaitingTaskLetsOthersRunKeepsItsStackAndShowsItsWait) {
  Scheduler::Report report;
  bool released = false;
  Post("craft", [&] {
    const std::string local = "kept";
    scheduler_.WaitBegin("Wait: future<x>");
    while (!released) scheduler_.Yield();
    scheduler_.WaitEnd();
    Note(local);
  });
  Post("look", [&] {
    report = scheduler_.Describe();
    Note("look");
    released = true;
  });
  Drain();
  EXPECT_THAT(happened_, ElementsAre("look", "kept"));
  ASSERT_EQ(report.running.size(), 2u);
  EXPECT_EQ(report.running[0].name + " " + report.running[0].waitLabel, "craft Wait: future<x>");
  EXPECT_EQ(report.running[1].waitLabel, "");
}

TEST_F(SchedulerTest, MergesOnlyWaitingTasksOfOneOwnerAndName) {
  const int other = 0;
  const auto post = [&](const void* owner, const char* name, bool merge) {
    return scheduler_.Post(
        {.name = name, .work = [=, this] { Note(name); }, .owner = owner, .merge = merge});
  };
  const auto release = Hold();
  EXPECT_EQ(post(this, "a", true), Scheduler::Posted::kQueued);
  EXPECT_EQ(post(this, "a", true), Scheduler::Posted::kMerged);
  EXPECT_EQ(post(this, "b", true), Scheduler::Posted::kQueued) << "another name";
  EXPECT_EQ(post(&other, "a", true), Scheduler::Posted::kQueued) << "another owner";
  EXPECT_EQ(post(this, "a", false), Scheduler::Posted::kQueued) << "does not ask for it";
  release();
  Drain();
  EXPECT_THAT(happened_, ElementsAre("a", "b", "a", "a"));
}

TEST_F(SchedulerTest, ATaskThatHasBegunIsNotMergedWith) {
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
    const Scheduler::Work work = [=, this] { Note(owner == this ? "dropped" : "kept"); };
    scheduler_.Post({.name = "t", .work = work, .owner = owner});
    scheduler_.PostAfter(milliseconds(1), {.name = "t", .work = work, .owner = owner});
  }
  scheduler_.Drop(this);
  release();
  Drain();
  EXPECT_THAT(happened_, ElementsAre("kept", "kept"));
}

TEST_F(SchedulerTest, DelayedTasksComeInTheOrderTheyAreDue) {
  for (const int delay : {30, 10, 20, 10}) {
    const Scheduler::Work work = [=, this] { Note(std::to_string(delay)); };
    scheduler_.PostAfter(milliseconds(delay), {.name = "late", .work = work});
  }
  Drain();
  EXPECT_THAT(happened_, ElementsAre("10", "10", "20", "30"));
}

TEST_F(SchedulerTest, AFailedTaskIsNamedAndTheOthersGoOn) {
  Post("bad", [] { throw std::runtime_error("broken"); });
  Post("good", [&] { Note("good"); });
  Drain();
  EXPECT_THAT(failures_, ElementsAre("bad: broken"));
  EXPECT_THAT(happened_, ElementsAre("good"));
}

TEST_F(SchedulerTest, QuietWaitsForQueuedDelayedRunningAndOutside) {
  std::atomic<bool> outside = false;
  std::promise<void> over;
  Post("watch", [&] {
    const auto isQuiet = [&] { return outside.load(); };
    EXPECT_FALSE(scheduler_.WaitUntilQuiet(milliseconds(20), isQuiet));
    const Scheduler::Work late = [&] {
      scheduler_.Yield();
      Note("late");
    };
    scheduler_.PostAfter(milliseconds(5), {.name = "late", .work = late});
    outside = true;
    EXPECT_TRUE(scheduler_.WaitUntilQuiet(milliseconds(10'000), isQuiet));
    Note("quiet");
    over.set_value();
  });
  over.get_future().wait();
  EXPECT_THAT(happened_, ElementsAre("late", "quiet"));
}

// Of this process; std::clock counts the passing time on Windows.
double ProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

TEST_F(SchedulerTest, AChangeByAnotherThreadIsSeenWithoutBurningTheProcessor) {
  std::atomic<bool> changed = false;
  std::promise<void> seen;
  Post("await", [&] {
    while (!changed) scheduler_.Yield();
    seen.set_value();
  });
  const double before = ProcessorSeconds();
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_LT(ProcessorSeconds() - before, 0.15);  // a loop that never sleeps takes all of the 0.3 s
  changed = true;
  scheduler_.Wake();
  seen.get_future().wait();
}

TEST_F(SchedulerTest, EveryTaskPostedFromManyThreadsRunsOnceAlsoWhenItYields) {
  constexpr int kTasks = 500;
  std::vector<int> runs(size_t{4} * kTasks, 0);  // touched on the scheduler's thread only
  std::vector<std::thread> posters;
  for (int t = 0; t < 4; ++t) {
    posters.emplace_back([&, t] {
      for (int i = t * kTasks; i < (t + 1) * kTasks; ++i) {
        scheduler_.Post({.name = "t", .work = [&, i] {
                           for (int yields = i % 3; yields > 0; --yields) scheduler_.Yield();
                           ++runs[i];
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
    Note("queued");
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
