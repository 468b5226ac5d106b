#include "loot/state/inventory_replacement.h"

#include <algorithm>
#include <utility>

#include "log/logger.h"
#include "loot/model/ownership_rules.h"

namespace Kest::Client::Loot {
namespace {

constexpr int kMostTimesBegun = 3;
constexpr size_t kFreedForOneMade = 8;  // takes about as long

}  // namespace

InventoryReplacement::InventoryReplacement(LootState& state,
                                           std::vector<SVDS::PlayerLootDTO> records,
                                           LootDefinitionsPointer definitions, size_t itemsInSlice)
    : state_(state),
      assembly_(state.collections, state.gameData),
      records_(std::move(records)),
      definitions_(std::move(definitions)),
      itemsInSlice_(itemsInSlice),
      basis_(CurrentBasis()) {}

InventoryReplacement::Basis InventoryReplacement::CurrentBasis() const {
  return {state_.collections.revision(), state_.gameData.revision(), state_.store.version()};
}

bool InventoryReplacement::Continue() {
  if (const Basis basis = CurrentBasis(); !(basis == basis_)) BeginAgain(basis);
  const size_t left = records_.size() - next_;
  const bool isInOneGo = timesBegun_ == kMostTimesBegun || records_.size() <= itemsInSlice_;
  const size_t end = next_ + (isInOneGo ? left : std::min(left, itemsInSlice_));
  for (; next_ < end; ++next_) Assemble(records_[next_]);
  if (left > 0 && !isInOneGo) return false;
  state_.store.Replace(&made_);
  state_.definitions = std::move(definitions_);
  return true;
}

bool InventoryReplacement::FreeSome() noexcept {
  const size_t most = kFreedForOneMade * itemsInSlice_;
  if (!PlayerLootStore::FreeSome(&made_, most)) return false;
  records_.resize(records_.size() - std::min(records_.size(), most));
  return records_.empty();
}

void InventoryReplacement::BeginAgain(const Basis& basis) {
  if (next_ > 0) ++timesBegun_;
  basis_ = basis;
  made_ = {};
  next_ = 0;
}

void InventoryReplacement::Assemble(const SVDS::PlayerLootDTO& record) {
  const bool isToBeLogged = next_ >= logged_;
  logged_ = std::max(logged_, next_ + 1);
  if (isToBeLogged) LogOkay("Loot::UpdatePlayerLoot %s", record.lootName.c_str());
  const SVDS::LootItemClientDTO* definition = definitions_->Find(record.lootName);
  if (!IsValidRecord(record, definition).value) {
    if (isToBeLogged) {
      LogWarning("Loot::UpdatePlayerLoot %s is not valid - ignoring", record.lootName.c_str());
    }
    return;
  }
  scratch_ = {};
  assembly_.Create(definitions_->recipes(), record, *definition, &scratch_);
  state_.store.AddTo(&made_, scratch_);
}

}  // namespace Kest::Client::Loot
