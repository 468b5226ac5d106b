#include "log/fatal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/logger.h"

namespace Kest {
namespace {

std::string Report(const Assertion& assertion) {
  char buffer[4096];
  FixedText text(buffer, sizeof(buffer));
  AppendAssertionReport(assertion, text);
  return std::string(text.View());
}

TEST(AssertionReport, LeavesOutWhatIsNotGiven) {
  const struct {
    const char* why;
    Assertion assertion;
    const char* expected;
  } kCases[] = {
      {"nothing", {}, "Assertion failed!\n\n"},
      {"code", {.expression = "ALE-1"}, "Assertion failed!\n\nExpression: ALE-1"},
      {"empty texts are not given", {"e", "", "", 0, ""}, "Assertion failed!\n\nExpression: e"},
      {"all",
       {"a == b", "they differ", "x.cc", 12, "Run"},
       "Assertion failed!\n\nFile: x.cc\nLine: 12\n\nFunction: Run\n\nExpression: a == b"
       "\n\nDescription: they differ"},
      {"negative line, no file",
       {"e", nullptr, nullptr, -3, nullptr},
       "Assertion failed!\n\nLine: -3\n\nExpression: e"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(Report(c.assertion), c.expected);
  }
}

// The report stands on standard error before the process ends.
TEST(FatalDeathTest, LogsTheReportAndEnds) {
  EXPECT_DEATH(
      Fatal(kFatalUuid),
      "log_test\\([0-9A-F]{8}\\):  ERROR\\| Assertion failed!\n\nExpression: ALE-8B4DC795\n");
}

TEST(FatalDeathTest, EndsWithADisabledLoggerToo) {
  EXPECT_DEATH(
      {
        Logger::Instance().SetDisabled(true);
        Fatal(kFatalAwait);
      },
      "");
}

}  // namespace
}  // namespace Kest
