#include "loot/readiness.h"

#include <gtest/gtest.h>

#include "loot/loot_status.h"

namespace Kest::Client::Loot {
namespace {

TEST(Readiness, TurnsWhenTheGoalIsReachedOrLeftAndNeverLosesBits) {
  struct {
    const char* why;
    uint8_t bits, goal;
    bool turned, ready;
  } const kSteps[] = {
      {"one of six", 1, 63, false, false},
      {"a smaller goal is reached by what is there", 0, 1, true, true},
      {"the same again", 1, 1, false, true},
      {"the old goal is far again", 0, 63, true, false},
      {"all but one", 46, 63, false, false},
      {"the last bit", 16, 63, true, true},
      {"a bit without a source is never set", 0, 64, true, false},
      {"no goal at all", 0, 0, true, true},
  };
  Readiness readiness;
  for (const auto& step : kSteps) {
    SCOPED_TRACE(step.why);
    EXPECT_EQ(readiness.Set(step.bits, step.goal), step.turned);
    EXPECT_EQ(readiness.Ready(), step.ready);
  }
  EXPECT_EQ(readiness.flags(), 63);
}

TEST(LootStatus, OnlyThePlayerAtTheVeryLevelQualifiesForTheChest) {
  LootStatus right;
  right.enabled = right.newPlayerChestEnabled = true;
  right.summonerLevel = right.minimumSummonerLevel = 30;
  ASSERT_TRUE(right.QualifiesForNewPlayerChest());
  struct {
    const char* why;
    void (*spoil)(LootStatus& status);
  } const kCases[] = {
      {"disabled", [](LootStatus& s) { s.enabled = false; }},
      {"asked already", [](LootStatus& s) { s.newPlayerCheckDone = true; }},
      {"no chest configured", [](LootStatus& s) { s.newPlayerChestEnabled = false; }},
      {"too low", [](LootStatus& s) { s.summonerLevel = 29; }},
      {"too high", [](LootStatus& s) { s.summonerLevel = 31; }},
      {"neither level known", [](LootStatus& s) { s.summonerLevel = s.minimumSummonerLevel = 0; }},
  };
  for (const auto& c : kCases) {
    LootStatus status = right;
    c.spoil(status);
    EXPECT_FALSE(status.QualifiesForNewPlayerChest()) << c.why;
  }
}

TEST(LootStatus, TheCheckIsScheduledForThirtySecondsAfterTheLogin) {
  LootStatus status;
  status.enabled = true;
  status.loginTime = 1000;
  EXPECT_TRUE(status.MayScheduleCheck(1029));
  EXPECT_FALSE(status.MayScheduleCheck(1030));
  status.retrievalPending = false;
  EXPECT_FALSE(status.MayScheduleCheck(1029)) << "something was retrieved";
}

}  // namespace
}  // namespace Kest::Client::Loot
