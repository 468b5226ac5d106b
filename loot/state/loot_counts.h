// LootCounts sums how many the player has of what a recipe's slot lists. It borrows the store's
// items and the lists: use it before the next change of the store or the definitions. Recipes share
// lists, so each is summed once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class LootCounts {
 public:
  explicit LootCounts(const Api::PlayerLootItems& items);

  // The counts of all items whose loot name or loot id is listed, each item once.
  int64_t Sum(const std::vector<std::string>& lootIds);

 private:
  int64_t Count(const std::vector<std::string>& lootIds) const;

  const Api::PlayerLootItems& items_;
  std::unordered_map<std::string_view, int64_t> byName_;
  std::unordered_map<const std::vector<std::string>*, int64_t> sums_;
};

}  // namespace Kest::Client::Loot
