#include "tests/loot/calls_fixture.h"

namespace Kest::Client::Loot {
namespace {

using ResponseCauseTest = CallsTest;

// What the host counts: on tasks what was set, on the thread of the events one more for each.
thread_local uint64_t taskCause = 0;
uint64_t arrivedCauses = 0;

TEST_F(ResponseCauseTest, WhatAResponseBringsAboutFollowsFromItWhicheverTaskHandlesIt) {
  auto* const table = const_cast<KestHostServices*>(host_.Services());
  table->cause = [](const KestHostServices*) {
    return taskCause != 0 ? taskCause : ++arrivedCauses;
  };
  table->setCause = [](const KestHostServices*, uint64_t cause) { taskCause = cause; };
  host_.RunTask([this] { proxy_.Start(); });
  for (const char* name : {"first", "second"}) {
    host_.RunTask([=, this] {
      taskCause = 7;
      const std::function<void(Nothing)> use = [=, this](Nothing) {
        seen_.push_back(name + std::to_string(services_.Cause()));
      };
      EXPECT_TRUE(proxy_.InvokeAndWait<Nothing>("loot", "m", InOnePart(use)));
      EXPECT_EQ(services_.Cause(), 7u);
    });
  }
  for (const char* uuid : {"uuid-2", "uuid-1"}) {
    host_.DeliverEvent("OnServiceProxyUuidEvent",
                       R"({"uuid":")" + std::string(uuid) + R"(","payload":"{}"})");
  }
  host_.RunUntilIdle();
  EXPECT_THAT(seen_, ::testing::ElementsAre("second1", "first2"));
}

}  // namespace
}  // namespace Kest::Client::Loot
