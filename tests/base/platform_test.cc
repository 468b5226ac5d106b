#include "base/platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <set>
#include <thread>

#include "base/mutex.h"
#include "base/platform_system.h"
#include "tests/support/golden.h"
#include "tests/support/pattern.h"

namespace Kest {
namespace {

using Testing::MatchesPattern;

#if defined(_WIN32)
constexpr char kThisProgram[] = "base_test.exe";
constexpr char kFolder[] = "folder\\";
// As stored: the third group is a number, its low byte first.
constexpr char kRandomUuid[] =
    "[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{2}4[0-9a-f]-[89ab][0-9a-f]{3}-[0-9a-f]{12}";
#else
constexpr char kThisProgram[] = "base_test";
constexpr char kFolder[] = "folder/";
constexpr char kRandomUuid[] =
    "[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}";
#endif

#if !defined(_WIN32)  // Windows has one zone for the machine
class ZoneTest : public ::testing::Test {
 protected:
  ~ZoneTest() override { SetZone("UTC"); }

  static void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    SystemReloadZone();
  }
};

TEST_F(ZoneTest, LocalTimeFollowsTheZone) {
  EXPECT_TRUE(Testing::GoldenCases("tests/base/zones.txt", [](const std::string& words) {
    const size_t end = words.find(' ');
    SetZone(words.substr(0, end).c_str());
    const LocalTime now = LocalTimeAt(std::stoll(words.substr(end)));
    std::string text;
    for (const int32_t part :
         {now.year, now.month, now.day, now.hour, now.minute, now.second, now.millisecond}) {
      text += " " + std::to_string(part);
    }
    return text.substr(1);
  }));
}
#endif

TEST(Clock, LocalTimeIsTheCLibrarysToo) {
  LocalTime ours;
  time_t now = 0;
  do {  // until no second has passed between the two
    now = time(nullptr);
    ours = LocalTimeAt(int64_t{now} * 1000);
  } while (time(nullptr) != now);
  const tm* const theirs = localtime(&now);
  EXPECT_EQ(ours, (LocalTime{theirs->tm_year + 1900, theirs->tm_mon + 1, theirs->tm_mday,
                             theirs->tm_hour, theirs->tm_min, theirs->tm_sec, 0}));
}

TEST(Clock, IsTheSystems) {
  const int64_t before = time(nullptr);
  const int64_t now = WallClockMilliseconds() / 1000;
  EXPECT_GE(now, before);
  EXPECT_LE(now, time(nullptr));
  const int64_t first = MillisecondsSinceFirstUse();
  EXPECT_GE(first, 0);
  EXPECT_GE(MillisecondsSinceFirstUse(), first);
}

TEST(Uuid, IsWrittenInByteOrder) {
  const UuidBytes bytes = {0x00, 0x01, 0xab, 0xcd, 0xef, 0x10, 0x7f, 0x80,
                           0x90, 0xff, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0a};
  EXPECT_EQ(FormatUuid(bytes), "0001abcd-ef10-7f80-90ff-05060708090a");
}

TEST(Uuid, FreshOnesDifferAndAreRandomOnes) {
  std::set<std::string> seen;
  for (int i = 0; i < 200; ++i) {
    UuidBytes bytes{};
    ASSERT_TRUE(CreateUuid(&bytes));
    const std::string text = FormatUuid(bytes);
    EXPECT_THAT(text, MatchesPattern(kRandomUuid));
    EXPECT_TRUE(seen.insert(text).second);
  }
}

TEST(Uuid, OneOfThisMachineOnlyIsOneToo) {
  constexpr int32_t kNoNetworkAddress = 1739;
  EXPECT_TRUE(IsUuidStatus(0) && IsUuidStatus(1824));
  EXPECT_FALSE(IsUuidStatus(kNoNetworkAddress) || IsUuidStatus(-1));
}

TEST(Process, ThreadIdsDiffer) {
  const uint32_t mine = CurrentThreadId();
  uint32_t other = 0;
  std::thread([&] { other = CurrentThreadId(); }).join();
  EXPECT_NE(other, 0u);
  EXPECT_NE(other, mine);
  EXPECT_EQ(CurrentThreadId(), mine);
}

TEST(Process, ModuleIsThisProgram) {
  EXPECT_EQ(FileNameOf(ModulePath()), kThisProgram);
  EXPECT_EQ(FileNameOf("plain"), "plain");
  EXPECT_EQ(FileNameOf(kFolder), "");
}

TEST(Mutex, LetsOneThreadInOnce) {
  Mutex mutex;
  int count = 0;
  const auto add = [&] {
    for (int i = 0; i < 20000; ++i) {
      const MutexLock hold(mutex);
      ++count;
    }
  };
  std::thread other(add);
  add();
  other.join();
  EXPECT_EQ(count, 40000);
  const MutexLock hold(mutex);
  EXPECT_FALSE(mutex.TryLock()) << "its owner neither";
}

}  // namespace
}  // namespace Kest
