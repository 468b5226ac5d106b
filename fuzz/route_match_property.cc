// A route template and a path, beside the regular expression that the template is displayed as: the
// same paths match, with the same captures. The first line is the template, the rest the path.
#include <regex>

#include "api/route_table.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"

namespace Kest::Fuzz {
namespace {

// The regular expression takes time and stack by the power of the groups and the length of the
// path.
constexpr size_t kMaxGroups = 4;
constexpr size_t kMaxPath = 40;
constexpr size_t kMaxTemplate = 64;

void CheckMatch(std::string_view text, std::string_view path) {
  const RouteTemplate route(text);
  const std::regex pattern(route.Pattern());
  if (pattern.mark_count() > kMaxGroups) return;
  RouteCaptures captures;
  const bool matches = route.Match(path, &captures);
  std::cmatch groups;
  Require(matches == std::regex_match(path.data(), path.data() + path.size(), groups, pattern),
          "a path matches as its pattern does", route.Pattern());
  if (matches) Require(captures.Size() == groups.size() - 1, "as many captures", route.Pattern());
  for (size_t i = 0; matches && i < captures.Size(); ++i) {
    RequireSame(groups[i + 1].str(), captures.At(i), route.Pattern());
  }

  RouteTable table;
  table.Add(HttpMethod::kGet, route);
  const bool isFound = table.Find(HttpMethod::kGet, path, &captures).has_value();
  Require(isFound == matches, "a table finds what matches", route.Pattern());
  Require(!table.Find(HttpMethod::kPut, path, &captures), "methods are apart", route.Pattern());
}

}  // namespace

void CheckRouteMatch(std::string_view input) {
  const std::string_view text = TakeUntil('\n', &input).substr(0, kMaxTemplate);
  // The library of regular expressions takes a NUL in a pattern for its end.
  if (text.find('\0') != std::string_view::npos) return;
  CheckMatch(text, input.substr(0, kMaxPath));
}

}  // namespace Kest::Fuzz
