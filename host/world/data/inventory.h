// What the player holds: counts by loot name and reference id. A count is between 1 and the largest
// 32-bit number; an item that falls to 0 is gone.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "host/json/json.h"

namespace Kest::Host {

// One kind of item. Its id is the name alone, or name, "-" and reference id.
struct LootKey {
  std::string lootName;
  std::string refId;

  std::string LootId() const { return refId.empty() ? lootName : lootName + "-" + refId; }
  friend auto operator<=>(const LootKey&,
                          const LootKey&) = default;  // NOLINT(modernize-use-nullptr)
};

struct LootRecord {
  int64_t count = 0;
  int64_t expiryTime = -1;  // milliseconds since 1970; -1: never
};

// Changes of several items at once.
using CountsByKey = std::map<LootKey, int64_t>;

class Inventory {
 public:
  int64_t Count(const LootKey& key) const;
  bool Holds(std::string_view lootName) const;
  // True when every count, after taking `taken` and then adding `added`, stays in its bounds.
  bool CanApply(const CountsByKey& taken, const CountsByKey& added) const;
  // Adds `delta` of either sign. REQUIRES: the count stays in its bounds. An item that was not
  // there gets `expiryTime`.
  void Add(const LootKey& key, int64_t delta, int64_t expiryTime);

  const std::map<LootKey, LootRecord>& records() const { return records_; }

 private:
  std::map<LootKey, LootRecord> records_;
};

// A player-loot record as the service writes it.
Json LootRecordJson(const LootKey& key, const LootRecord& record);

// All of it, as a list of such records.
Json InventoryJson(const Inventory& inventory);

}  // namespace Kest::Host
