#include "loot/state/loot_inventory.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "log/logger.h"
#include "loot/model/loot_id.h"
#include "loot/model/ownership_rules.h"

namespace Kest::Client::Loot {
namespace {

int32_t ClampCount(int64_t count, const std::string& lootId) {
  constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
  constexpr int64_t kHighest = std::numeric_limits<int32_t>::max();
  const int64_t clamped = std::clamp(count, kLowest, kHighest);
  if (clamped != count) LogWarning("Loot count out of range: %s", lootId.c_str());
  return static_cast<int32_t>(clamped);
}

}  // namespace

LootInventory::LootInventory(LootState& state, size_t itemsInSlice)
    : state_(state), itemsInSlice_(itemsInSlice), assembly_(state.collections, state.gameData) {}

InventoryReplacement LootInventory::Replace(std::vector<SVDS::PlayerLootDTO> records,
                                            LootDefinitionsPointer definitions) {
  return {state_, std::move(records), std::move(definitions), itemsInSlice_};
}

void LootInventory::ApplyDelta(const SVDS::PlayerLootDTO& record, int64_t delta) {
  if (delta == 0) return;
  const std::string lootId = MakeLootId(record.lootName, record.refId);
  Api::PlayerLoot item;
  if (const Api::PlayerLootPointer stored = state_.store.Find(lootId)) {
    item = *stored;
    item.count = ClampCount(int64_t{item.count} + delta, lootId);
  } else {
    const SVDS::LootItemClientDTO* definition = state_.definitions->Find(record.lootName);
    if (definition == nullptr) return;
    SVDS::PlayerLootDTO created = record;
    created.count = ClampCount(delta, lootId);
    assembly_.Create(state_.definitions->recipes(), created, *definition, &item);
  }
  if (item.count == 0) return state_.store.Remove(lootId);
  if (delta > 0) item.isNew = true;
  state_.store.Put(item);
}

void LootInventory::Refresh(Api::PlayerLoot* item) const {
  if (const auto stored = state_.store.Find(MakeLootId(item->lootName, item->refId))) {
    *item = *stored;
    return;
  }
  const SVDS::LootItemClientDTO* definition = state_.definitions->Find(item->lootName);
  if (definition == nullptr) return;
  Api::PlayerLoot built;
  assembly_.Create(state_.definitions->recipes(),
                   {item->lootName, item->refId, 0, item->expiryTime}, *definition, &built);
  *item = std::move(built);
}

void LootInventory::MarkRedeemed(std::string_view lootName) {
  const Api::PlayerLootPointer stored = state_.store.Find(MakeLootId(lootName, {}));
  if (stored == nullptr) return;
  Api::PlayerLoot item = *stored;
  Loot::MarkRedeemed(&item);
  state_.store.Put(item);
}

bool LootInventory::ClearNewMark(const std::string& lootId) {
  const Api::PlayerLootPointer stored = state_.store.Find(lootId);
  if (stored == nullptr) return false;
  if (stored->isNew) {
    Api::PlayerLoot item = *stored;
    item.isNew = false;
    state_.store.Put(item);
  }
  return true;
}

Api::PlayerLoot LootInventory::Assemble(const SVDS::PlayerLootDTO& record,
                                        DecisionTrace* trace) const {
  Api::PlayerLoot item;
  assembly_.Create(state_.definitions->recipes(), record,
                   *state_.definitions->Find(record.lootName), &item, trace);
  return item;
}

void LootInventory::ReassembleAll() {
  state_.store.EditAll([this](Api::PlayerLoot& item) { assembly_.ApplyCollectionStatus(&item); });
}

}  // namespace Kest::Client::Loot
