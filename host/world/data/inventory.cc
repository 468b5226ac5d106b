#include "host/world/data/inventory.h"

#include <limits>

namespace Kest::Host {

int64_t Inventory::Count(const LootKey& key) const {
  const auto found = records_.find(key);
  return found == records_.end() ? 0 : found->second.count;
}

bool Inventory::Holds(std::string_view lootName) const {
  const auto first = records_.lower_bound(LootKey{std::string(lootName), ""});
  return first != records_.end() && first->first.lootName == lootName;
}

bool Inventory::CanApply(const CountsByKey& taken, const CountsByKey& added) const {
  CountsByKey left;
  for (const auto& [key, count] : taken) {
    left[key] = Count(key) - count;
    if (left[key] < 0) return false;
  }
  for (const auto& [key, count] : added) {
    const auto found = left.find(key);
    const int64_t before = found == left.end() ? Count(key) : found->second;
    if (count > std::numeric_limits<int32_t>::max() - before) return false;
  }
  return true;
}

void Inventory::Add(const LootKey& key, int64_t delta, int64_t expiryTime) {
  if (delta == 0) return;
  const auto [place, isNew] = records_.try_emplace(key, LootRecord{0, expiryTime});
  place->second.count += delta;
  if (place->second.count == 0) records_.erase(place);
}

Json LootRecordJson(const LootKey& key, const LootRecord& record) {
  return Json{{"lootName", key.lootName},
              {"refId", key.refId},
              {"count", record.count},
              {"expiryTime", record.expiryTime}};
}

Json InventoryJson(const Inventory& inventory) {
  Json records = Json::array();
  for (const auto& [key, record] : inventory.records()) {
    records.push_back(LootRecordJson(key, record));
  }
  return records;
}

}  // namespace Kest::Host
