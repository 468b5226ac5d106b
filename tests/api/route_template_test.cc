#include "api/route_template.h"

#include "api/http_names.h"
#include "api/route_table.h"
#include "tests/support/golden.h"

namespace Kest {
namespace {

TEST(RouteTemplate, CompilesToThePatternAndItsParameters) {
  EXPECT_TRUE(Testing::GoldenCases("tests/api/route_templates.txt", [](const std::string& text) {
    const RouteTemplate compiled(text);
    std::string outcome(compiled.Pattern());
    for (const auto& [name, form] : compiled.Parameters()) {
      constexpr const char* kForms[] = {"segment", "rest", "fragment"};
      outcome.append(" ").append(name).append(":").append(kForms[static_cast<size_t>(form)]);
    }
    return outcome;
  }));
}

TEST(RouteTemplate, KeepsEveryCaptureAndStaysLinearWhereARegularExpressionExplodes) {
  const std::string segment(1 << 20, 'a');
  RouteCaptures captures;
  EXPECT_TRUE(RouteTemplate("/p/{id}/x").Match("/p/" + segment + "/x", &captures));
  EXPECT_EQ(captures.At(0).size(), segment.size());
  const RouteTemplate adjacent("{+a}{+b}{+c}{+d}!");
  EXPECT_FALSE(adjacent.Match(segment, &captures));
  EXPECT_TRUE(adjacent.Match(segment + "!", &captures));
  EXPECT_EQ(captures.At(0).size(), segment.size());
  EXPECT_EQ(captures.At(3), "");

  std::string text, path;  // more groups than have a place of their own
  for (char c = 'a'; c < 'a' + 20; ++c) text += "/{x}", path += std::string("/") + c;
  ASSERT_TRUE(RouteTemplate(text).Match(path, &captures));
  ASSERT_EQ(captures.Size(), 20u);
  for (size_t i = 0; i < 20; ++i) EXPECT_EQ(captures.At(i), path.substr(2 * i + 1, 1));
  EXPECT_EQ(captures.At(20), "");
}

TEST(RouteTable, FirstOfAMethodWins) {
  using enum HttpMethod;
  const RouteTemplate one("/recipes/initial-item/{id}"), two("/recipes/{name}/craft");
  const RouteTemplate shortTail("/r/{+rest}"), root("/"), any("{+all}");
  RouteTable table;
  const std::pair<HttpMethod, const RouteTemplate&> kRoutes[] = {
      {kPost, one}, {kPost, two}, {kGet, two}, {kGet, shortTail}, {kGet, root}, {kPut, any}};
  for (const auto& [method, route] : kRoutes) table.Add(method, route);
  EXPECT_TRUE(Testing::GoldenCases("tests/api/routes.txt", [&](const std::string& request) {
    const size_t space = request.find(' ');
    RouteCaptures captures;
    const auto found =
        table.Find(ParseMethod(request.substr(0, space)), request.substr(space + 1), &captures);
    return found ? std::to_string(*found) : "none";
  }));
}

}  // namespace
}  // namespace Kest
