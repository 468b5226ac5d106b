#include "log/line_template.h"

#include "tests/support/cases.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

const LogRecord kRecord = {.time = {2024, 5, 6, 7, 8, 9, 10},
                           .level = Level::kWarning,
                           .groups = kGroupDebug | kGroupNetwork,
                           .message = "ready",
                           .executable = "client"};

using Testing::ExpectEach;

std::string Line(std::string_view lineTemplate, const LogRecord& record = kRecord) {
  char buffer[kLineCapacity];
  const std::string_view line = FormatLine(lineTemplate, record, buffer);
  EXPECT_EQ(line.data()[line.size()], '\0');
  return std::string(line);
}

TEST(LineTemplate, Fields) {
  EXPECT_TRUE(Testing::GoldenCases("tests/log/line_templates.txt",
                                   [](const std::string& text) { return Line(text); }));
  // Levels are six wide; groups come lowest bit first and are unnamed from bit 8 on.
  ExpectEach<LogRecord>(
      {{"no group", {.level = Level::kOkay}, "  OKAY||\n"},
       {"all named",
        {.level = Level::kWarning, .groups = 0xff},
        "  WARN|DBG;GEN;XTR;PRF;MEM;DSK;NET;TST|\n"},
       {"unnamed",
        {.level = Level::kError, .groups = GroupMask{1} << 63 | GroupMask{1} << 8 | kGroupTest},
        " ERROR|TST;???;???|\n"},
       {"widest", {.level = Level::kAlways}, "ALWAYS||\n"}},
      [](const LogRecord& record) { return Line("#L|#G|", record); });
}

TEST(LineTemplate, EndsWithOneLineFeedAndFitsItsBuffer) {
  ExpectEach<std::string, size_t>(
      {{"own line feed is enough", "a\n", 2},
       {"two of its own stay", "a\n\n", 3},
       {"one byte below the cap", std::string(4093, 'x'), 4094},
       {"at the cap", std::string(4094, 'x'), 4095},
       {"truncated", std::string(4095, 'x'), 4095},
       {"truncated after a line feed", std::string(4093, 'x').append("\ny"), 4094}},
      [](const std::string& message) {
        const std::string line = Line("#M", {.message = message});
        EXPECT_EQ(line.back(), '\n');
        return line.size();
      });
}

TEST(LineTemplate, ThreadIdAndFileNameTimestamp) {
  char buffer[32];
  std::snprintf(buffer, sizeof(buffer), "%08X\n", CurrentThreadId());
  EXPECT_EQ(Line("#T"), buffer);
  FixedBuffer text(buffer, sizeof(buffer));
  AppendFileNameTimestamp(kRecord.time, text);
  EXPECT_EQ(text.View(), "2024-05-06T07-08-09");
}

}  // namespace
}  // namespace Kest
