#include "host/world/loot/odds.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "host/world/loot/outputs.h"

namespace Kest::Host {
namespace {

// Evaluates, output by output, how likely each item is. Outputs are independent of each other but
// for those without duplicates: what they draw from depends on what came before. So there is a case
// for each set of items that a later one of these would leave aside.
class ExactOdds {
 public:
  ExactOdds(const WorldData& data, const PlatformRecipe& recipe, const Inventory& inventory,
            const PlatformCollections& collections)
      : data_(data), recipe_(recipe), inventory_(inventory), collections_(collections) {
    for (const PlatformRecipeOutput& output : recipe.outputs) {
      for (const OddsEntry& entry : EntriesOf(output))
        items_.emplace(entry.lootName, items_.size());
    }
  }

  // How likely each item is; nothing when there are too many cases.
  std::optional<std::map<std::string, double>> Evaluate() {
    cases_[{}] = {1, std::vector<double>(items_.size(), 1)};
    for (size_t i = 0; i < recipe_.outputs.size(); ++i) {
      if (!Add(i)) return std::nullopt;
    }
    std::map<std::string, double> shares;
    for (const auto& [name, index] : items_) {
      double absent = 0;
      for (const auto& [kept, one] : cases_) absent += one.likelihood * one.absent[index];
      shares[name] = std::clamp(1 - absent, 0.0, 1.0);
    }
    return shares;
  }

 private:
  static constexpr size_t kMostCases = 4096;
  static constexpr size_t kMostSteps = 20'000'000;

  struct Case {
    double likelihood = 0;
    std::vector<double> absent;  // by item: how likely it has not come yet, in this case
  };
  using Kept = std::set<std::string>;
  using Cases = std::map<Kept, Case>;

  std::vector<OddsEntry> EntriesOf(const PlatformRecipeOutput& output) const {
    const auto table = data_.odds.find(output.lootName);
    if (table == data_.odds.end()) return {OddsEntry{output.lootName, 1, 1}};
    return table->second;
  }

  // What outputs after `index` would leave aside.
  Kept LeftAsideAfter(size_t index) const {
    Kept names;
    for (size_t i = index + 1; i < recipe_.outputs.size(); ++i) {
      const PlatformRecipeOutput& output = recipe_.outputs[i];
      const auto table = data_.odds.find(output.lootName);
      if (output.allowDuplicates || table == data_.odds.end()) continue;
      for (const OddsEntry& entry : table->second) names.insert(entry.lootName);
    }
    return names;
  }

  // The chance of each item that the output can give in a case.
  std::map<std::string, double> Chances(const PlatformRecipeOutput& output,
                                        const Kept& kept) const {
    const auto table = data_.odds.find(output.lootName);
    if (table == data_.odds.end()) return {{output.lootName, output.probability}};
    CountsByKey added;
    for (const std::string& name : kept) added[{name, ""}] = 1;
    const auto candidates = DrawCandidates(data_, table->second, output.allowDuplicates, inventory_,
                                           collections_, added);
    double total = 0;
    for (const OddsEntry* entry : candidates) total += static_cast<double>(entry->weight);
    std::map<std::string, double> chances;
    for (const OddsEntry* entry : candidates) {
      chances[entry->lootName] += output.probability * static_cast<double>(entry->weight) / total;
    }
    return chances;
  }

  bool Add(size_t index) {
    const Kept matters = LeftAsideAfter(index);
    Cases next;
    for (const auto& [kept, one] : std::exchange(cases_, {})) {
      double nothing = 1;
      for (const auto& [name, chance] : Chances(recipe_.outputs[index], kept)) {
        nothing -= chance;
        Kept later = Restricted(kept, matters);
        if (matters.contains(name)) later.insert(name);
        steps_ += items_.size();
        Merge(next, std::move(later), one, chance, &name);
      }
      Merge(next, Restricted(kept, matters), one, std::max(0.0, nothing), nullptr);
      if (next.size() > kMostCases || steps_ > kMostSteps) return false;
    }
    cases_ = std::move(next);
    return true;
  }

  static Kept Restricted(const Kept& kept, const Kept& matters) {
    Kept rest;
    for (const std::string& name : kept) {
      if (matters.contains(name)) rest.insert(name);
    }
    return rest;
  }

  // Adds the part of `one` in which `gained` comes (null: nothing) to a case of `next`.
  void Merge(Cases& next, Kept kept, const Case& one, double chance, const std::string* gained) {
    const double likelihood = one.likelihood * chance;
    if (likelihood <= 0) return;
    Case& sum = next[std::move(kept)];
    sum.absent.resize(items_.size());
    const double share = likelihood / (sum.likelihood + likelihood);
    sum.likelihood += likelihood;
    const size_t came = gained == nullptr ? items_.size() : items_.at(*gained);
    for (size_t i = 0; i < items_.size(); ++i) {
      const double absent = i == came ? 0 : one.absent[i];
      sum.absent[i] += (absent - sum.absent[i]) * share;
    }
  }

  const WorldData& data_;
  const PlatformRecipe& recipe_;
  const Inventory& inventory_;
  const PlatformCollections& collections_;
  std::map<std::string, size_t> items_;
  Cases cases_;
  size_t steps_ = 0;
};

}  // namespace

int64_t DrawCost(const WorldData& data, const PlatformRecipe& recipe) {
  int64_t cost = 1;
  for (const PlatformRecipeOutput& output : recipe.outputs) {
    const auto table = data.odds.find(output.lootName);
    cost += table == data.odds.end() ? 1 : static_cast<int64_t>(table->second.size());
  }
  return cost;
}

OddsByLootName TryOdds(const WorldData& data, const PlatformRecipe& recipe,
                       const Inventory& inventory, const PlatformCollections& collections,
                       int64_t trials, SeededRandom& random) {
  OddsByLootName odds;
  if (const auto exact = ExactOdds(data, recipe, inventory, collections).Evaluate()) {
    for (const auto& [lootName, share] : *exact) odds[lootName].exact = share;
  }
  for (int64_t trial = 0; trial < trials; ++trial) {
    const std::string* last = nullptr;
    const CountsByKey given = RollOutputs(data, recipe, 1, inventory, collections, "", random);
    for (const auto& [key, count] : given) {
      ItemOdds& item = odds[key.lootName];
      if (last == nullptr || *last != key.lootName) ++item.drawn;  // tokens of two champions
      item.quantity += count;
      last = &key.lootName;
    }
  }
  return odds;
}

ShareInterval WilsonInterval(int64_t drawn, int64_t trials) {
  constexpr double kZ = 1.959963984540054;  // 97.5 % of the normal distribution lie below
  const auto n = static_cast<double>(trials);
  const double share = static_cast<double>(drawn) / n;
  const double middle = share + kZ * kZ / (2 * n);
  const double half = kZ * std::sqrt((share * (1 - share) + kZ * kZ / (4 * n)) / n);
  const double scale = 1 + kZ * kZ / n;
  return {std::max(0.0, (middle - half) / scale), std::min(1.0, (middle + half) / scale)};
}

}  // namespace Kest::Host
