// Results that crafts give instead of what they would roll, by recipe, in the order they were
// prepared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "host/world/data/inventory.h"

namespace Kest::Host {

struct PreparedResult {
  std::string recipeName;
  CountsByKey added;
  int64_t times = 1;  // for how many crafts
};

class PreparedResults {
 public:
  static constexpr size_t kMostResults = 100;

  // False: there are too many.
  bool Add(PreparedResult result);
  void Clear() { results_.clear(); }

  // What the next craft of the recipe gives; null: what it rolls. Valid until the next change.
  const CountsByKey* Next(std::string_view recipeName) const;
  // A craft of the recipe has given what was prepared, if anything was.
  void Use(std::string_view recipeName);

  const std::deque<PreparedResult>& results() const { return results_; }

 private:
  std::deque<PreparedResult> results_;
};

}  // namespace Kest::Host
