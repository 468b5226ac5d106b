#include "log/logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "log/positional_format.h"
#include "tests/support/cases.h"
#include "tests/support/classic_locale.h"
#include "tests/support/log_capture.h"
#include "tests/support/pattern.h"

namespace Kest {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;

// Calls its function with each line and flush.
struct CallTarget : LogTarget {
  explicit CallTarget(std::function<void()> call) : onUse(std::move(call)) {}
  const char* ClassName() const override { return "CallTarget"; }
  void Write(const LogRecord&) override { onUse(); }
  void Flush() override { onUse(); }
  std::function<void()> onUse;
};

Logger& logger = Logger::Instance();
constexpr GroupMask kLateGroup = GroupMask{1} << 40;
constexpr LogRecord kRecord = {.message = "direct"};

// Which of the built-in targets a call reaches with the defaults.
TEST(LoggerDefaults, ConsoleAndDebuggerTakeWarningsOfNoGroupOrOfDebug) {
  logger.ResetForTests();
  EXPECT_EQ(logger.FindTarget("StdOutLogTarget"), nullptr);
  Testing::ExpectEach<std::pair<Level, GroupMask>>(
      {{"okay is below every minimum", {Level::kOkay, kNoGroups}, ""},
       {"no group", {Level::kWarning, kNoGroups}, "console debugger output "},
       {"debug", {Level::kError, kGroupDebug}, "console debugger "},
       {"general", {Level::kAlways, kGroupGeneral}, "output "},
       {"excluded beats included", {Level::kError, kGroupDebug | kGroupGeneral}, "debugger "},
       {"no included bit", {Level::kError, kGroupNetwork}, ""},
       {"high bit beside it", {Level::kError, kLateGroup | kGroupDebug}, "console debugger "}},
      [](const std::pair<Level, GroupMask>& line) {
        const auto accepts = [&line](const LogTarget* target, const char* name) {
          return target->Accepts(line.first, line.second) ? name : "";
        };
        return std::string(accepts(logger.FindTarget("StdErrLogTarget"), "console ")) +
               accepts(logger.FindTarget("DebuggerConsoleLogTarget"), "debugger ") +
               accepts(&logger.StandardOutput(), "output ");
      });
}

// By default okay and extra are dropped. Counted is what passes, with any target or none.
TEST(Logger, CountsWhatPassesTheGlobalFilter) {
  LogCapture log;
  logger.SetMinimumLevel(Level::kWarning);
  LogOkay("quiet");
  Log(Level::kError, kGroupExtra | kGroupDebug, "extra and debug");
  LogWarning("%s", "warned");
  log.SetLevel(Level::kAlways);
  LogError("counted");
  Log(Level::kAlways, kGroupDebug | kGroupNetwork, "always %d", 1);
  logger.SetDisabled(true);
  LogError("dropped");
  logger.SetDisabled(false);
  logger.SetExcludedGroups(kNoGroups);
  Log(Level::kError, kGroupExtra, "counted");
  EXPECT_EQ(logger.WarningCount(), 1u);
  EXPECT_EQ(logger.ErrorCount(), 2u);
  EXPECT_THAT(log.Lines(), ElementsAre("  WARN|| warned", "ALWAYS|DBG;NET| always 1"));
}

TEST(Logger, ConsoleLinesArriveComplete) {
  logger.ResetForTests();
  logger.Attach(logger.StandardOutput());
  ::testing::internal::CaptureStderr();
  ::testing::internal::CaptureStdout();
  LogError("first\n");
  Log(Level::kError, kGroupGeneral, "second");
  logger.Flush();
  EXPECT_THAT(::testing::internal::GetCapturedStderr(),
              Testing::MatchesPattern("log_test(\\.exe)?\\([0-9A-F]{8}\\):  ERROR\\| first\n"));
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "first\nsecond\n");
  logger.ResetForTests();
}

TEST(Logger, StampsEachLineWithItsOwnTimeAndKeepsLongMessages) {
  LogCapture log("#D #H");
  int64_t now = 1'700'000'000'123;
  Logger::Instance().SetClock(
      {[](const void* reading) { return *static_cast<const int64_t*>(reading); }, &now});
  for (const int64_t step : {0, 1, 876, -2000, 12'034'005}) {
    now += step;
    LogError(";");
  }
  Logger::Instance().SetClock({});
  EXPECT_THAT(log.Lines(),
              ElementsAre(EndsWith(":20.123 000000.000"), EndsWith(":20.124 000000.001"),
                          EndsWith(":21.000 000000.877"), EndsWith(":19.000 000000.000"),
                          EndsWith(":53.005 012032.882")));
  LogCapture full("#M");
  LogError("%s", std::string(5000, 'x').c_str());
  EXPECT_THAT(full.Lines(), ElementsAre(std::string(4094, 'x')));
}

TEST(LogTarget, EntriesDriveTheTargetInMaskHalves) {
  LogCapture log;
  const LogTargetEntries& entries = LogTarget::Entries();
  entries.setLevel(&log, 2);
  EXPECT_EQ(entries.getLevel(&log), 2);
  entries.setMasks(&log, 0x3, 0x100, 0x2, 0x80000000);
  EXPECT_EQ(entries.getIncludedMask(&log), uint64_t{0x100} << 32 | 1);
  EXPECT_EQ(entries.getExcludedMask(&log), uint64_t{0x80000000} << 32 | 2);
  EXPECT_TRUE(entries.getEnabled(&log));
  log.Detach();
  log.Detach();
  EXPECT_FALSE(entries.getEnabled(&log));
  LogError("unheard");
  entries.write(&log, &kRecord);
  EXPECT_THAT(log.Lines(), ElementsAre("  OKAY|| direct"));
}

TEST(Logger, TargetsAreServedInOrderOfAttachmentOnce) {
  LogCapture log;
  std::string journal;
  CallTarget first([&] { journal += 'a'; }), second([&] { journal += 'b'; });
  logger.Attach(second);
  logger.Attach(first);
  logger.Attach(second);
  LogError("line");
  EXPECT_EQ(logger.FindTarget("CallTarget"), &second);
  first.Detach();
  LogError("line");
  second.Detach();
  EXPECT_EQ(journal, "bab");
}

using HookCalls = std::vector<std::string>;

// Notes what a hook is given and logs a line of its own, which no target sees.
void Record(void* context, int32_t level, uint32_t low, uint32_t high, const char* format,
            va_list arguments) {
  const Testing::ClassicLocale classic;
  char text[64];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  std::vsnprintf(text, sizeof(text), format, arguments);
#pragma GCC diagnostic pop
  static_cast<HookCalls*>(context)->push_back(Format("%1 %2 %3 %4", level, low, high, text));
  LogError("from the hook");
}

TEST(ForwardHook, SeesEveryCallAndLeavesTheArgumentsAlone) {
  LogCapture log;
  HookCalls calls;
  logger.SetMinimumLevel(Level::kWarning);
  logger.SetForwardHook(Record, &calls);
  LogOkay("%s %d", "filtered", 1);
  Log(Level::kError, kLateGroup | kGroupDebug, "%s %d %.1f", "kept", 2, 0.5);
  logger.SetDisabled(true);
  LogWarning("disabled");
  logger.SetForwardHook(nullptr, nullptr);
  LogWarning("after");
  EXPECT_THAT(calls, ElementsAre("0 0 0 filtered 1", "2 1 256 kept 2 0.5", "1 0 0 disabled"));
  EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|DBG;???| kept 2 0.5"));
}

TEST(Nested, LinesFromAHookOrSinkAreCountedAndDropped) {
  LogCapture log;
  HookCalls calls;
  logger.SetForwardHook(Record, &calls);
  CallTarget echo([&] {
    LogWarning("from the sink");
    logger.Flush();
  });
  logger.Attach(echo);
  LogError("outer");
  LogError("outer again");
  echo.Detach();
  logger.SetForwardHook(nullptr, nullptr);
  EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|| outer", " ERROR|| outer again"));
  EXPECT_EQ(calls.size(), 2u);
  EXPECT_EQ(logger.WarningCount(), 2u);
  EXPECT_EQ(logger.ErrorCount(), 4u);
}

TEST(Nested, AThrowingSinkLosesOnlyItsOwnLine) {
  LogCapture log;
  log.Detach();
  CallTarget thrower([] { throw std::bad_alloc(); });
  logger.Attach(thrower);
  logger.Attach(log);
  LogError("one");
  LogError("two");
  logger.Flush();
  LogTarget::Entries().write(&thrower, &kRecord);
  LogTarget::Entries().flush(&thrower);
  thrower.Detach();
  EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|| one", " ERROR|| two"));
}

// Lines are whole, none is lost, counters are exact, and detaching while others log neither hangs
// nor lets a line through afterwards.
TEST(LoggerThreads, ManyThreadsLogWhileTargetsComeAndGo) {
  constexpr int kThreads = 4;
  constexpr int kLines = 500;
  LogCapture log("#M");
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([thread] {
      for (int line = 0; line < kLines; ++line) LogWarning("%d:%d", thread, line);
    });
  }
  for (int round = 0; round < 50; ++round) {
    std::atomic<bool> attached = true;
    CallTarget target([&] { EXPECT_TRUE(attached); });
    logger.Attach(target);
    target.SetMasks(kGroupDebug, kNoGroups);
    target.Detach();
    attached = false;
  }
  for (std::thread& thread : threads) thread.join();

  int next[kThreads] = {};
  for (const std::string& line : log.Lines()) {
    const int thread = line[0] - '0';
    ASSERT_TRUE(thread >= 0 && thread < kThreads) << line;
    ASSERT_EQ(line, std::to_string(thread) + ":" + std::to_string(next[thread]++));
  }
  EXPECT_THAT(next, ::testing::Each(kLines));
  EXPECT_EQ(logger.WarningCount(), static_cast<uint32_t>(kThreads * kLines));
}

}  // namespace
}  // namespace Kest
