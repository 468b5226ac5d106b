#include "log/line_template.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kest {
namespace {

const LogRecord kRecord = {.time = {2024, 5, 6, 7, 8, 9, 10},
                           .level = Level::kWarning,
                           .groups = kGroupDebug | kGroupNetwork,
                           .message = "ready",
                           .executable = "client"};

std::string Line(std::string_view lineTemplate, const LogRecord& record = kRecord) {
  char buffer[kLineCapacity];
  const std::string_view line = FormatLine(lineTemplate, record, buffer);
  EXPECT_EQ(line.data()[line.size()], '\0');
  return std::string(line);
}

TEST(LineTemplate, Fields) {
  const struct {
    const char* why;
    const char* lineTemplate;
    const char* expected;
  } kCases[] = {
      {"the default", "#D| #L| #G| #M", "2024-05-06T07:08:09.010|   WARN| DBG;NET| ready\n"},
      {"console", "#E: #L| #M", "client:   WARN| ready\n"},
      {"doubled mark", "##M", "#M\n"},
      {"unknown field prints its letter", "#Q#m", "Qm\n"},
      {"mark at the end prints nothing", "#M#", "ready\n"},
      {"no field", "plain", "plain\n"},
      {"nothing at all", "", "\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(Line(c.lineTemplate), c.expected);
  }
}

TEST(LineTemplate, GroupsLowestBitFirstUnnamedFromBit8) {
  LogRecord record = kRecord;
  record.groups = 0;
  EXPECT_EQ(Line("#G", record), "\n");
  record.groups = 0xff;
  EXPECT_EQ(Line("#G", record), "DBG;GEN;XTR;PRF;MEM;DSK;NET;TST\n");
  record.groups = GroupMask{1} << 63 | GroupMask{1} << 8 | kGroupTest;
  EXPECT_EQ(Line("#G", record), "TST;???;???\n");
}

TEST(LineTemplate, LevelsAreSixWide) {
  LogRecord record = kRecord;
  const char* const kNames[] = {"  OKAY\n", "  WARN\n", " ERROR\n", "ALWAYS\n"};
  for (int32_t level = 0; level < 4; ++level) {
    record.level = static_cast<Level>(level);
    EXPECT_EQ(Line("#L", record), kNames[level]);
  }
}

TEST(LineTemplate, ElapsedCountsFromTheFirstUse) {
  ResetClockForTests();
  SetClockForTests(0, 77);
  EXPECT_EQ(Line("#H"), "000000.000\n");
  AdvanceClockForTests(12'034'005);
  EXPECT_EQ(Line("#H"), "012034.005\n");
  ResetClockForTests();
}

TEST(LineTemplate, ThreadIdIsEightUpperCaseDigits) {
  char expected[16];
  std::snprintf(expected, sizeof(expected), "%08X\n", CurrentThreadId());
  EXPECT_EQ(Line("#T"), expected);
}

TEST(LineTemplate, EndsWithOneLineFeedAndFitsItsBuffer) {
  const struct {
    const char* why;
    std::string message;
    size_t size;
  } kCases[] = {
      {"own line feed is enough", "a\n", 2},
      {"two of its own stay", "a\n\n", 3},
      {"one byte below the cap", std::string(4093, 'x'), 4094},
      {"at the cap", std::string(4094, 'x'), 4095},
      {"cut", std::string(4095, 'x'), 4095},
      {"cut behind a line feed", std::string(4093, 'x').append("\ny"), 4094},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    LogRecord record = kRecord;
    record.message = c.message;
    const std::string line = Line("#M", record);
    EXPECT_EQ(line.size(), c.size);
    EXPECT_EQ(line.back(), '\n');
  }
}

TEST(LineTemplate, FileNameTimestampHasNoColonAndNoMilliseconds) {
  char buffer[32];
  FixedText text(buffer, sizeof(buffer));
  AppendFileNameTimestamp(kRecord.time, text);
  EXPECT_EQ(text.View(), "2024-05-06T07-08-09");
}

}  // namespace
}  // namespace Kest
