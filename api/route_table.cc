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
  if (route.IsLiteral()) row.more = 0;
  const bool atEnd = !route.Suffix().empty();
  const std::string_view literal = atEnd ? route.Suffix() : route.Prefix();
  if (row.minimum >= kWindow && (atEnd || literal.size() >= kWindow)) {
    if (!atEnd) row.prefixEnd = literal.size();
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

std::optional<size_t> RouteTable::Find(HttpMethod method, std::string_view path,
                                       RouteCaptures* captures) const {
  const uint64_t last = path.size() >= kWindow ? LoadWindow(path.data() + path.size()) : 0;
  for (const Row& row : rows_[static_cast<size_t>(method)]) {
    if (path.size() - row.minimum > row.more) continue;  // a shorter path wraps around
    const uint64_t window = row.prefixEnd != 0 ? LoadWindow(path.data() + row.prefixEnd) : last;
    if ((window & row.mask) != row.window) continue;
    if (row.route->Match(path, captures)) return row.number;
  }
  return std::nullopt;
}

}  // namespace Kest
