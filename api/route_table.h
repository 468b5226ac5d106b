// Finds the route of a request among all templates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "api/http_names.h"
#include "api/route_template.h"

namespace Kest {

// RouteTable tries the templates of a method in the order they were added; the first match wins,
// however specific. A path that only another method knows is not found.
// Threads:  any, once nothing is added any more.
// Lifetime: borrows the templates.
class RouteTable {
 public:
  // Gives `route` the next number, counted from 0 over all methods.
  void Add(HttpMethod method, const RouteTemplate& route);

  // The number of the first match, with its captures (views into `path`). Allocates nothing for
  // the usual templates, see RouteTemplate::Match.
  std::optional<size_t> Find(HttpMethod method, std::string_view path,
                             RouteCaptures* captures) const;

 private:
  // Refuses most paths at the cost of one comparison: a path must have these bytes, up to eight,
  // right before its end (or right before the end of the route's prefix).
  struct Row {
    uint64_t window = 0;
    uint64_t mask = 0;
    size_t prefixEnd = 0;        // 0: the window ends with the path
    size_t minimum = 0;          // length of a path
    size_t more = SIZE_MAX / 2;  // bytes that a path may have beyond that
    const RouteTemplate* route = nullptr;
    size_t number = 0;
  };

  std::array<std::vector<Row>, kHttpMethodCount> rows_;
  size_t count_ = 0;
};

}  // namespace Kest
