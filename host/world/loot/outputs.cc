#include "host/world/loot/outputs.h"

#include <algorithm>
#include <iterator>

#include "host/world/data/platform_constants.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

bool HasAlready(const WorldData& data, const std::string& lootName, const Inventory& inventory,
                const PlatformCollections& collections, const CountsByKey& added) {
  if (inventory.Holds(lootName)) return true;
  const auto found = added.lower_bound(LootKey{lootName, ""});
  if (found != added.end() && found->first.lootName == lootName) return true;
  const LootDefinition& definition = *data.FindDefinition(lootName);
  const auto collection = CollectionOfLootType(definition.type);
  if (!collection) return false;
  const Collectible* thing = collections.Find(*collection, definition.storeItemId);
  return thing != nullptr && thing->ownership.owned;
}

class Roll {
 public:
  Roll(const WorldData& data, const Inventory& inventory, const PlatformCollections& collections,
       const std::string& refId, SeededRandom& random)
      : data_(data),
        inventory_(inventory),
        collections_(collections),
        refId_(refId),
        random_(random) {}

  void Add(const PlatformRecipeOutput& output) {
    if (random_.Fraction() >= output.probability) return;
    const auto table = data_.odds.find(output.lootName);
    if (table == data_.odds.end()) {
      AddCount(KeyOf(output.lootName), output.quantity);
      return;
    }
    const OddsEntry& entry = Pick(table->second, output.allowDuplicates);
    AddCount(KeyOf(entry.lootName), output.quantity * entry.quantity);
  }

  CountsByKey Take() { return std::move(added_); }

 private:
  LootKey KeyOf(const std::string& lootName) {
    if (data_.FindDefinition(lootName)->type != kChampionTokenType) return {lootName, ""};
    if (!refId_.empty()) return {lootName, refId_};
    const PlatformCollections::Table& champions = collections_[Collection::kChampions];
    if (champions.empty()) return {lootName, "0"};
    const auto step = static_cast<std::ptrdiff_t>(random_.Below(champions.size()));
    return {lootName, std::to_string(std::next(champions.begin(), step)->first)};
  }

  // Stays at one more than an inventory holds, so that a long run cannot overflow and is refused.
  void AddCount(const LootKey& key, int64_t count) {
    int64_t& sum = added_[key];
    sum = std::min(sum + count, kMax32 + 1);
  }

  const OddsEntry& Pick(const std::vector<OddsEntry>& table, bool allowDuplicates) {
    const std::vector<const OddsEntry*> candidates =
        DrawCandidates(data_, table, allowDuplicates, inventory_, collections_, added_);
    uint64_t total = 0;
    for (const OddsEntry* entry : candidates) total += static_cast<uint64_t>(entry->weight);
    uint64_t ticket = random_.Below(total);
    size_t drawn = 0;
    while (ticket >= static_cast<uint64_t>(candidates[drawn]->weight)) {
      ticket -= static_cast<uint64_t>(candidates[drawn++]->weight);
    }
    return *candidates[drawn];
  }

  const WorldData& data_;
  const Inventory& inventory_;
  const PlatformCollections& collections_;
  const std::string& refId_;
  SeededRandom& random_;
  CountsByKey added_;
};

}  // namespace

std::vector<const OddsEntry*> DrawCandidates(const WorldData& data,
                                             const std::vector<OddsEntry>& table,
                                             bool allowDuplicates, const Inventory& inventory,
                                             const PlatformCollections& collections,
                                             const CountsByKey& added) {
  std::vector<const OddsEntry*> candidates;
  for (const OddsEntry& entry : table) {
    if (allowDuplicates || !HasAlready(data, entry.lootName, inventory, collections, added)) {
      candidates.push_back(&entry);
    }
  }
  if (!candidates.empty()) return candidates;
  for (const OddsEntry& entry : table) candidates.push_back(&entry);
  return candidates;
}

CountsByKey RollOutputs(const WorldData& data, const PlatformRecipe& recipe, int64_t repeat,
                        const Inventory& inventory, const PlatformCollections& collections,
                        const std::string& refId, SeededRandom& random) {
  Roll roll(data, inventory, collections, refId, random);
  for (int64_t round = 0; round < repeat; ++round) {
    for (const PlatformRecipeOutput& output : recipe.outputs) roll.Add(output);
  }
  return roll.Take();
}

}  // namespace Kest::Host
