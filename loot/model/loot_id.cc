#include "loot/model/loot_id.h"

namespace Kest::Client::Loot {

std::string MakeLootId(std::string_view lootName, std::string_view refId) {
  std::string lootId;
  MakeLootId(lootName, refId, &lootId);
  return lootId;
}

void MakeLootId(std::string_view lootName, std::string_view refId, std::string* lootId) {
  lootId->assign(lootName);
  if (refId.empty()) return;
  lootId->push_back(kLootIdSeparator);
  lootId->append(refId);
}

LootIdParts SplitLootId(std::string_view lootId) {
  const size_t separator = lootId.find(kLootIdSeparator);
  if (separator == std::string_view::npos) return {lootId, {}};
  return {lootId.substr(0, separator), lootId.substr(separator + 1)};
}

}  // namespace Kest::Client::Loot
