#include "host/world/loot/prepared_results.h"

#include <algorithm>
#include <utility>

namespace Kest::Host {
namespace {

auto FindFirst(auto& results, std::string_view recipeName) {
  return std::find_if(results.begin(), results.end(), [recipeName](const PreparedResult& result) {
    return result.recipeName == recipeName;
  });
}

}  // namespace

bool PreparedResults::Add(PreparedResult result) {
  if (results_.size() >= kMostResults) return false;
  results_.push_back(std::move(result));
  return true;
}

const CountsByKey* PreparedResults::Next(std::string_view recipeName) const {
  const auto found = FindFirst(results_, recipeName);
  return found == results_.end() ? nullptr : &found->added;
}

void PreparedResults::Use(std::string_view recipeName) {
  const auto found = FindFirst(results_, recipeName);
  if (found != results_.end() && --found->times == 0) results_.erase(found);
}

}  // namespace Kest::Host
