#include "host/faults/fault_rules.h"

#include <gtest/gtest.h>

#include <map>

namespace Kest::Host {
namespace {

TEST(FaultRules, APatternMatchesAsItIsWritten) {
  const struct {
    const char* pattern;
    const char* text;
    bool matches;
  } cases[] = {{"", "", true},
               {"", "a", false},
               {"*", "", true},
               {"*", "/a/b", true},
               {"/a", "/a", true},
               {"/a", "/a/b", false},
               {"/a/*", "/a/", true},
               {"/a/*", "/a", false},
               {"*b", "abab", true},
               {"*ab*ab", "ab", false},
               {"*ab*ab", "xabyab", true},
               {"a*b*c", "abbbcbc", true},
               {"a*b*c", "abbbcb", false},
               {"**", "x", true}};
  for (const auto& c : cases) {
    EXPECT_EQ(MatchesPattern(c.pattern, c.text), c.matches) << c.pattern << " " << c.text;
  }
  // As long as outside text can be: the time is bounded by the product of the lengths.
  const std::string stars = "*a*a*a*a*a*a*a*a*b";
  EXPECT_FALSE(MatchesPattern(stars, std::string(2000, 'a')));
}

FaultRule Delay(int64_t from, int64_t to) {
  FaultRule rule;
  rule.pattern = "*";
  rule.delay = {from, to};
  rule.fault.delay = from;
  return rule;
}

TEST(FaultRules, TheFirstRuleWhoseTurnItIsDecides) {
  FaultRule second = Delay(2, 2);
  second.nth = 2;
  second.times = 2;
  FaultRule other = Delay(9, 9);
  other.pattern = "other";
  FaultRules rules(1);
  rules.Set({second, other, Delay(1, 1)}, std::nullopt, false);
  std::string delays;
  for (int i = 0; i < 5; ++i) {
    delays += std::to_string(*rules.Next(FaultTarget::kService, "call")->delay) + " ";
  }
  EXPECT_EQ(delays, "1 2 2 1 1 ");
  EXPECT_EQ(rules.Next(FaultTarget::kService, "other")->delay, 9);
  EXPECT_FALSE(rules.Next(FaultTarget::kSibling, "call"));
  const Json shown = rules.ToJson()["rules"];
  EXPECT_EQ(shown[2]["matched"], 6) << "another rule decided three of them";
  EXPECT_EQ(shown[2]["applied"], 3);
}

TEST(FaultRules, ARuleComesAndGoesWithoutAChangeOfTheOthers) {
  FaultRule once = Delay(1, 1);
  once.times = 1;
  FaultRules rules(1);
  rules.Set({once}, 7, true);
  rules.Next(FaultTarget::kService, "call");
  const Json before = rules.ToJson();
  ASSERT_TRUE(rules.Add(Delay(2, 2)));
  EXPECT_EQ(rules.Next(FaultTarget::kService, "call")->delay, 2) << "the first is used up";
  const auto id = rules.ToJson()["rules"][1]["id"].get<uint64_t>();
  EXPECT_TRUE(rules.Remove(id));
  EXPECT_FALSE(rules.Remove(id));
  Json expected = before;
  expected["rules"][0]["matched"] = 2;
  EXPECT_EQ(rules.ToJson(), expected);
  ASSERT_TRUE(rules.Add(Delay(3, 3), true));
  ASSERT_TRUE(rules.Add(Delay(4, 4)));
  EXPECT_EQ(rules.Next(FaultTarget::kService, "call")->delay, 3) << "it is before the others";
  const Json later = rules.ToJson()["rules"];
  EXPECT_EQ(later[1]["matched"], 3) << "the others keep their counts";
  EXPECT_EQ(later[2]["delay"], 4);
  while (rules.ToJson()["rules"].size() < FaultRules::kMostRules) rules.Add(Delay(1, 1));
  EXPECT_FALSE(rules.Add(Delay(1, 1)));
  EXPECT_TRUE(rules.PutFirst(Delay(5, 5))) << "in place of all of them";
  while (rules.ToJson()["rules"].size() < FaultRules::kMostRules) rules.Add(Delay(1, 1));
  FaultRule other = Delay(1, 1);
  other.pattern = "other";
  EXPECT_FALSE(rules.PutFirst(other));
}

TEST(FaultRules, ChanceIsWhatTheSeedMakesOfTheProbability) {
  FaultRule chance = Delay(10, 14);
  chance.probability = 0.25;
  FaultRules rules(301);
  const auto run = [&](std::optional<uint64_t> seed) {
    rules.Set({chance}, seed, false);
    std::map<int64_t, int> counts;
    for (int i = 0; i < 4000; ++i) {
      const auto fault = rules.Next(FaultTarget::kService, "x");
      ++counts[fault ? *fault->delay : 0];
    }
    return counts;
  };
  const auto counts = run(std::nullopt);
  EXPECT_EQ(counts.size(), 6u);
  EXPECT_NEAR(counts.at(0), 3000, 110);  // four standard deviations
  for (int64_t delay = 10; delay <= 14; ++delay) EXPECT_NEAR(counts.at(delay), 200, 56) << delay;
  EXPECT_EQ(run(std::nullopt), counts);
  EXPECT_NE(run(302), counts);
}

}  // namespace
}  // namespace Kest::Host
