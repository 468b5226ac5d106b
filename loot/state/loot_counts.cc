#include "loot/state/loot_counts.h"

#include <unordered_set>

namespace Kest::Client::Loot {

LootCounts::LootCounts(const Api::PlayerLootItems& items) : items_(items) {
  byName_.reserve(items.size());
  for (const auto& [lootId, item] : items) byName_[item->lootName] += item->count;
}

int64_t LootCounts::Sum(const std::vector<std::string>& lootIds) {
  const auto [sum, isNew] = sums_.try_emplace(&lootIds);
  if (isNew) sum->second = Count(lootIds);
  return sum->second;
}

int64_t LootCounts::Count(const std::vector<std::string>& lootIds) const {
  const std::unordered_set<std::string_view> listed(lootIds.begin(), lootIds.end());
  int64_t sum = 0;
  for (const std::string_view id : listed) {
    if (const auto named = byName_.find(id); named != byName_.end()) sum += named->second;
    const auto found = items_.find(std::string(id));
    if (found == items_.end()) continue;
    const Api::PlayerLoot& item = *found->second;
    if (listed.count(item.lootName) == 0) sum += item.count;  // else counted by its name
  }
  return sum;
}

}  // namespace Kest::Client::Loot
