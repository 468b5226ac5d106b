// Loot ids: the loot name alone, or name, "-" and reference id when there is a reference id.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Client::Loot {

inline constexpr char kLootIdSeparator = '-';

std::string MakeLootId(std::string_view lootName, std::string_view refId);

// The same into a string that may already have capacity; `*lootId` must not be one of the parts.
void MakeLootId(std::string_view lootName, std::string_view refId, std::string* lootId);

// Views into the string they were split from.
struct LootIdParts {
  std::string_view lootName;
  std::string_view refId;  // empty when the id holds no separator
};

// Splits at the first separator: later ones belong to the reference id.
LootIdParts SplitLootId(std::string_view lootId);

}  // namespace Kest::Client::Loot
