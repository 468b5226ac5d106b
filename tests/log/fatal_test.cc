#include "log/fatal.h"

#include <gmock/gmock.h>

#include "log/logger.h"
#include "tests/support/cases.h"

namespace Kest {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(AssertionReport, LeavesOutWhatIsNotGiven) {
  char buffer[4096];
  const auto report = [&buffer](const Assertion& assertion) {
    FixedBuffer text(buffer, sizeof(buffer));
    AppendAssertionReport(assertion, text);
    return text.View();
  };
  Testing::ExpectEach<Assertion>(
      {{"nothing", {}, "Assertion failed!\n\n"},
       {"code", {.expression = "ALE-1"}, "Assertion failed!\n\nExpression: ALE-1"},
       {"empty texts", {"e", "", "", 0, ""}, "Assertion failed!\n\nExpression: e"},
       {"all",
        {"a == b", "they differ", "x.cc", 12, "Run"},
        "Assertion failed!\n\nFile: x.cc\nLine: 12\n\nFunction: Run\n\nExpression: a == b"
        "\n\nDescription: they differ"},
       {"negative line",
        {"e", nullptr, nullptr, -3},
        "Assertion failed!\n\nLine: -3\n\nExpression: e"}},
      report);
}

// The report is on standard error before the process ends.
TEST(FatalDeathTest, LogsTheReportAndEndsWithADisabledLoggerToo) {
  EXPECT_DEATH(Fatal(kFatalUuid),
               AllOf(StartsWith("log_test"), HasSubstr("):  ERROR| Assertion failed!"),
                     HasSubstr("\nExpression: ALE-8B4DC795")));
  EXPECT_DEATH((Logger::Instance().SetDisabled(true), Fatal(kFatalAwait)), "");
}

}  // namespace
}  // namespace Kest
