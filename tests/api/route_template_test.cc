#include "api/route_template.h"

#include <random>
#include <regex>

#include "api/route_table.h"

namespace Kest {
namespace {

using enum ParameterForm;
using Parameters = std::vector<TemplateParameter>;

TEST(RouteTemplate, CompilesToThePatternAndItsParameters) {
  const struct {
    const char* why;
    const char* text;
    const char* pattern;
    Parameters parameters;
  } kCases[] = {
      {"no parameter", "/tav-loot/v1/ready", "/tav-loot/v1/ready", {}},
      {"segment between literals",
       "/p/{lootId}/context-menu",
       "/p/([^/]*)/context-menu",
       {{"lootId", kSegment}}},
      {"rest", "/p/{+path}", "/p/(.*)", {{"path", kRest}}},
      {"fragment", "/p{#part}", "/p#(.*)", {{"part", kFragment}}},
      {"later + and # belong to the name",
       "{a+}{b#}",
       "([^/]*)([^/]*)",
       {{"a+", kSegment}, {"b#", kSegment}}},
      {"form may change while the name is empty",
       "{+#a}{#+b}",
       "#(.*)(.*)",
       {{"a", kFragment}, {"b", kRest}}},
      {"brace inside a parameter starts it afresh",
       "{a{b}{+a{b}",
       "([^/]*)([^/]*)",
       {{"b", kSegment}, {"b", kSegment}}},
      {"stray brace names a parameter without a group",
       "/a}{b}",
       "/a([^/]*)",
       {{"", kSegment}, {"b", kSegment}}},
      {"unfinished parameter is nothing", "/a{b", "/a", {}},
      {"empty name", "/{}", "/([^/]*)", {{"", kSegment}}},
      {"special characters are escaped",
       "^$.*+?()[]|\\-/",
       "\\^\\$\\.\\*\\+\\?\\(\\)\\[\\]\\|\\\\-/",
       {}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    const RouteTemplate route(c.text);
    EXPECT_EQ(route.Pattern(), c.pattern);
    EXPECT_EQ(route.Parameters(), c.parameters);
    EXPECT_EQ(route.Text(), c.text);
  }
}

// The matcher is compared with the regular expression that the pattern stands for.
TEST(RouteTemplate, MatchesWhatItsPatternMatches) {
  std::mt19937 random(301);
  const auto pick = [&random](const auto& list) { return list[random() % std::size(list)]; };
  const char* const kPieces[] = {"/", "/", "a", ".", "a/", "{x}", "{x}", "{+x}", "{#x}", "}", "#"};
  const char kCharacters[] = {'/', '/', 'a', 'a', '.', '#', '\n', '\r', '\0', '\xC3'};
  int matched = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (size_t n = random() % 8; n > 0; --n) text += pick(kPieces);
    const RouteTemplate route(text);
    const std::regex pattern(route.Pattern());
    for (int i = 0; i < 20; ++i) {
      std::string path;
      for (size_t n = random() % 9; n > 0; --n) path += pick(kCharacters);
      std::smatch groups;
      RouteCaptures captures;
      const bool expected = std::regex_match(path, groups, pattern);
      ASSERT_EQ(route.Match(path, &captures), expected) << text << " on " << path;
      if (!expected) continue;
      ++matched;
      ASSERT_EQ(captures.Size(), groups.size() - 1);
      for (size_t g = 0; g < captures.Size(); ++g) {
        ASSERT_EQ(captures.At(g), groups[g + 1].str()) << text << " on " << path << ", group " << g;
      }
    }
  }
  EXPECT_GT(matched, 3000);
}

TEST(RouteTemplate, StaysLinearWhereARegularExpressionExplodes) {
  const std::string segment(1 << 20, 'a');
  RouteCaptures captures;
  EXPECT_TRUE(RouteTemplate("/p/{id}/x").Match("/p/" + segment + "/x", &captures));
  EXPECT_EQ(captures.At(0).size(), segment.size());
  const RouteTemplate adjacent("{+a}{+b}{+c}{+d}!");
  EXPECT_FALSE(adjacent.Match(segment, &captures));
  EXPECT_TRUE(adjacent.Match(segment + "!", &captures));
  EXPECT_EQ(captures.At(0).size(), segment.size());
  EXPECT_EQ(captures.At(3), "");
}

TEST(RouteTemplate, KeepsEveryCaptureOfManyGroups) {
  std::string text, path;
  for (char c = 'a'; c < 'a' + 20; ++c) text += "/{x}", path += std::string("/") + c;
  RouteCaptures captures;
  ASSERT_TRUE(RouteTemplate(text).Match(path, &captures));
  ASSERT_EQ(captures.Size(), 20u);
  EXPECT_EQ(captures.At(7), "h");
  EXPECT_EQ(captures.At(8), "i");
  EXPECT_EQ(captures.At(19), "t");
  EXPECT_EQ(captures.At(20), "");
}

TEST(RouteTable, FirstOfAMethodWins) {
  const RouteTemplate one("/recipes/initial-item/{id}"), two("/recipes/{name}/craft");
  const RouteTemplate shortTail("/r/{+rest}"), root("/"), any("{+all}");
  RouteTable table;
  table.Add(HttpMethod::kPost, one);
  table.Add(HttpMethod::kPost, two);
  table.Add(HttpMethod::kGet, two);
  table.Add(HttpMethod::kGet, shortTail);
  table.Add(HttpMethod::kGet, root);
  table.Add(HttpMethod::kPut, any);
  const struct {
    const char* why;
    HttpMethod method;
    const char* path;
    int number;
  } kCases[] = {
      {"both match", HttpMethod::kPost, "/recipes/initial-item/craft", 0},
      {"only the second", HttpMethod::kPost, "/recipes/open/craft", 1},
      {"another method's", HttpMethod::kGet, "/recipes/open/craft", 2},
      {"method without routes", HttpMethod::kDelete, "/recipes/open/craft", -1},
      {"empty capture", HttpMethod::kPost, "/recipes/initial-item/", 0},
      {"shorter than the comparison window", HttpMethod::kGet, "/r/", 3},
      {"shortest", HttpMethod::kGet, "/", 4},
      {"longer than a literal", HttpMethod::kGet, "/x", -1},
      {"empty path", HttpMethod::kPut, "", 5},
      {"same end, other beginning", HttpMethod::kPost, "/others/open/craft", -1},
      {"same beginning, other end", HttpMethod::kPost, "/recipes/open/craft/", -1},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.why);
    RouteCaptures captures;
    const auto found = table.Find(c.method, c.path, &captures);
    EXPECT_EQ(found ? static_cast<int>(*found) : -1, c.number);
  }
}

}  // namespace
}  // namespace Kest
