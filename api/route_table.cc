#include "api/route_table.h"

#include <algorithm>
#include <cstring>

namespace Kest {
namespace {

constexpr size_t kWindow = sizeof(uint64_t);

uint64_t LoadWindow(const char* end) {
  uint64_t window;
  std::memcpy(&window, end - kWindow, kWindow);
  return window;
}

}  // namespace

void RouteTable::Add(HttpMethod method, const RouteTemplate& route) {
  Row row;
  row.route = &route;
  row.number = count_++;
  row.minimum = route.MinimumLength();
  if (route.IsLiteral()) row.maximum = row.minimum;
  const bool atEnd = !route.Suffix().empty();
  const std::string_view literal = atEnd ? route.Suffix() : route.Prefix();
  if (!atEnd) row.prefixEnd = literal.size();
  if (row.minimum >= kWindow && (atEnd || literal.size() >= kWindow)) {
    char window[kWindow] = {};
    char mask[kWindow] = {};
    const size_t count = std::min(kWindow, literal.size());
    std::memcpy(window + kWindow - count, literal.data() + literal.size() - count, count);
    std::memset(mask + kWindow - count, 0xFF, count);
    row.window = LoadWindow(window + kWindow);
    row.mask = LoadWindow(mask + kWindow);
  }
  rows_[static_cast<size_t>(method)].push_back(row);
}

bool RouteTable::MayMatch(const Row& row, std::string_view path) {
  if (path.size() < row.minimum || path.size() > row.maximum) return false;
  if (row.mask == 0) return true;
  const size_t end = row.prefixEnd != 0 ? row.prefixEnd : path.size();
  return (LoadWindow(path.data() + end) & row.mask) == row.window;
}

std::optional<size_t> RouteTable::Find(HttpMethod method, std::string_view path,
                                       RouteCaptures* captures) const {
  for (const Row& row : rows_[static_cast<size_t>(method)]) {
    if (MayMatch(row, path) && row.route->Match(path, captures)) return row.number;
  }
  return std::nullopt;
}

}  // namespace Kest
