#include "loot/explain/item_explanation.h"

#include <algorithm>
#include <vector>

#include "loot/calls/loot_retrieval.h"
#include "loot/explain/condition_tree.h"
#include "loot/model/loot_id.h"
#include "loot/model/ownership_rules.h"
#include "loot/state/loot_inventory.h"
#include "loot/state/loot_state.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {
namespace {

constexpr size_t kMostIdsListed = 100;

// The ids of held items of that loot name, sorted.
BindingProperty IdsOf(std::string_view lootName, const PlayerLootStore& store) {
  std::vector<std::string_view> ids;
  for (const auto& [lootId, item] : store.items()) {
    if (item->lootName == lootName) ids.push_back(lootId);
  }
  std::ranges::sort(ids);
  ids.resize(std::min(ids.size(), kMostIdsListed));
  return ValueTree(std::vector<std::string>(ids.begin(), ids.end()));
}

BindingProperty ExplainAbsence(const std::string& lootId, const LootState& state,
                               const LootRetrieval& retrieval) {
  const LootIdParts parts = SplitLootId(lootId);
  const SVDS::PlayerLootDTO record{std::string(parts.lootName), std::string(parts.refId), 1, 0};
  const auto isValid = IsValidRecord(record, state.definitions->Find(parts.lootName));
  const Conditions<3> conditions = {
      {{"isRetrieved", !retrieval.Pending(), "An inventory was retrieved.",
        "No inventory was retrieved yet."},
       {"isValid", isValid.value, isValid.because, isValid.because},
       {"isHeld", false, {}, "The inventory and what changed since have no such item."}}};
  return Structure{{"lootId", lootId},
                   {"isHeld", false},
                   {"reason", ReasonOf(conditions, {})},
                   {"conditions", ConditionsTree(conditions)},
                   {"heldOfThisName", IdsOf(parts.lootName, state.store)}};
}

// The sentence of the step that decided last on whether it can be redeemed.
std::string_view DecidingReason(const DecisionTrace& trace) {
  std::string_view reason;
  for (const BindingProperty& step : trace.Steps().AllElements()) {
    const std::string_view name = step.FindMember("step")->AsString();
    if (name == "redeemable" || name == "kept") reason = step.FindMember("reason")->AsString();
  }
  return reason;
}

// What the stored item has otherwise than one that was just assembled.
BindingProperty DifferencesOf(const Api::PlayerLoot& stored, Api::PlayerLoot assembled) {
  assembled.isNew = stored.isNew;
  const BindingProperty storedTree = ValueTree(stored);
  const BindingProperty assembledTree = ValueTree(assembled);
  BindingProperty differences = BindingProperty::Collection();
  for (size_t i = 0; i < storedTree.Size(); ++i) {
    if (storedTree.MemberValue(i) == assembledTree.MemberValue(i)) continue;
    differences.Append() = Structure{{"member", storedTree.MemberName(i)},
                                     {"stored", storedTree.MemberValue(i)},
                                     {"assembled", assembledTree.MemberValue(i)}};
  }
  return differences;
}

BindingProperty RedeemTree(const Api::PlayerLoot& item, const LootSwitch& loot) {
  const auto offer = OfferConditions(item);
  const Conditions<3> conditions = {
      {offer[0],
       offer[1],
       {"isLootEnabled", loot.Enabled(), "Loot is enabled.", "Loot is disabled."}}};
  return Structure{{"isOffered", AllHold(offer)},
                   {"isEnabled", AllHold(conditions)},
                   {"reason", ReasonOf(conditions, "It can be redeemed.")},
                   {"conditions", ConditionsTree(conditions)}};
}

}  // namespace

BindingProperty ExplainItem(const std::string& lootId, const LootState& state,
                            const LootInventory& inventory, const LootRetrieval& retrieval,
                            const LootSwitch& loot) {
  const Api::PlayerLootPointer stored = state.store.Find(lootId);
  if (stored == nullptr) return ExplainAbsence(lootId, state, retrieval);
  DecisionTrace trace;
  const Api::PlayerLoot assembled = inventory.Assemble(
      {stored->lootName, stored->refId, stored->count, stored->expiryTime}, &trace);
  const BindingProperty differences = DifferencesOf(*stored, assembled);
  return Structure{
      {"lootId", lootId},
      {"isHeld", true},
      {"reason", differences.Size() == 0
                     ? DecidingReason(trace)
                     : "Since these steps it was changed, its status was kept, or game data came."},
      {"itemStatus", ValueTree(stored->itemStatus)},
      {"parentItemStatus", ValueTree(stored->parentItemStatus)},
      {"redeemableStatus", ValueTree(stored->redeemableStatus)},
      {"steps", trace.Steps()},
      {"differences", differences},
      {"redeem", RedeemTree(*stored, loot)}};
}

}  // namespace Kest::Client::Loot
