#include "loot/state/loot_counts.h"

#include <algorithm>
#include <utility>

#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

// Empty where none is listed.
std::string_view FindEssence(const std::vector<std::string>& lootNames) {
  const auto found = std::ranges::find_if(
      lootNames, [](const std::string& name) { return Contains(kCurrencyLootIds, name); });
  return found == lootNames.end() ? std::string_view() : *found;
}

// One for each query.
std::vector<Ingredient> ListIngredients(const IndexedRecipe& recipe) {
  std::vector<Ingredient> ingredients;
  std::unordered_map<const void*, size_t> places;
  for (const IndexedSlot& slot : recipe.slots) {
    const auto [place, isNew] = places.try_emplace(slot.lootNames, ingredients.size());
    if (isNew) ingredients.push_back({slot.lootNames, FindEssence(*slot.lootNames)});
    ingredients[place->second].quantity += std::max(slot.quantity, 0);
  }
  return ingredients;
}

// Visits what is held by reference id: what is issued for none and what is issued for `refId`.
template <class T, class Visit>
void ForEachUsable(const std::map<std::string_view, T>& held, std::string_view refId, Visit visit) {
  if (const auto found = held.find({}); found != held.end()) visit(found->second);
  if (refId.empty()) return;
  if (const auto found = held.find(refId); found != held.end()) visit(found->second);
}

}  // namespace

bool CraftNeeds::IsMet() const {
  return std::ranges::none_of(ingredients, [](const Ingredient& one) { return one.missing > 0; });
}

LootCounts::LootCounts(const Api::PlayerLootItems& items) : items_(items) {
  for (const auto& [lootId, item] : items) {
    if (item->lootName != lootId) issued_[item->lootName].push_back(item.get());
  }
}

const CraftNeeds& LootCounts::FindNeeds(const IndexedRecipe& recipe, std::string_view refId) {
  const std::pair key(&recipe, refId);
  const auto known = found_.find(key);
  if (known != found_.end()) return known->second;
  return found_.emplace(key, CollectNeeds(recipe, refId)).first->second;
}

CraftNeeds LootCounts::CollectNeeds(const IndexedRecipe& recipe, std::string_view refId) {
  CraftNeeds best{ListIngredients(recipe), refId};
  int64_t least = SetMissing(&best.ingredients, refId);
  if (least == 0 || !refId.empty()) return best;
  for (const std::string_view candidate : RefIdsOf(best.ingredients)) {
    CraftNeeds needs{best.ingredients, candidate};
    const int64_t missing = SetMissing(&needs.ingredients, candidate);
    if (missing >= least) continue;
    best = std::move(needs);
    least = missing;
  }
  return best;
}

int64_t LootCounts::SetMissing(std::vector<Ingredient>* ingredients, std::string_view refId) {
  Supplies supplies;
  std::vector<int64_t> units(ingredients->size());
  for (size_t i = 0; i < units.size(); ++i) {
    const Listed& listed = FindListed((*ingredients)[i].lootNames);
    ForEachUsable(listed.units, refId, [&](int64_t held) { units[i] += held; });
  }
  ForEachUsable(FindShared(*ingredients), refId, [&](const Supplies& shared) {
    for (const auto& [demands, held] : shared) {
      supplies[demands] += held;
      for (const uint32_t demand : demands) units[demand] -= held;
    }
  });
  for (uint32_t i = 0; i < units.size(); ++i) supplies[{i}] = units[i];  // what only it takes

  SlotAssignment assignment(ingredients->size(), supplies);
  int64_t missing = 0;
  for (uint32_t i = 0; i < units.size(); ++i) {
    Ingredient& ingredient = (*ingredients)[i];
    ingredient.missing = assignment.Meet(i, ingredient.quantity);
    missing += ingredient.missing;
  }
  return missing;
}

std::set<std::string_view> LootCounts::RefIdsOf(const std::vector<Ingredient>& ingredients) {
  std::set<std::string_view> refIds;
  for (const Ingredient& ingredient : ingredients) {
    for (const auto& [refId, units] : FindListed(ingredient.lootNames).units) refIds.insert(refId);
  }
  return refIds;
}

const LootCounts::Listed& LootCounts::FindListed(LootNames lootNames) {
  const auto known = listed_.find(lootNames);
  if (known != listed_.end()) return known->second;
  Listed listed;
  for (const std::string& name : *lootNames) {
    if (const auto item = items_.find(name); item != items_.end()) {
      listed.items.push_back(item->second.get());
    }
    if (const auto named = issued_.find(name); named != issued_.end()) {
      listed.items.insert(listed.items.end(), named->second.begin(), named->second.end());
    }
  }
  std::ranges::sort(listed.items);
  listed.items.erase(std::unique(listed.items.begin(), listed.items.end()), listed.items.end());
  for (const Item item : listed.items) listed.units[item->refId] += std::max(item->count, 0);
  return listed_.emplace(lootNames, std::move(listed)).first->second;
}

const LootCounts::SharedSupplies& LootCounts::FindShared(
    const std::vector<Ingredient>& ingredients) {
  std::vector<LootNames> lists;
  lists.reserve(ingredients.size());
  for (const Ingredient& ingredient : ingredients) lists.push_back(ingredient.lootNames);
  const auto known = shared_.find(lists);
  if (known != shared_.end()) return known->second;
  SharedSupplies shared = CollectShared(lists);
  return shared_.emplace(std::move(lists), std::move(shared)).first->second;
}

// The longest list is only searched, so that a long one beside short ones costs little.
LootCounts::SharedSupplies LootCounts::CollectShared(const std::vector<LootNames>& lists) {
  SharedSupplies shared;
  if (lists.size() < 2) return shared;
  std::vector<const std::vector<Item>*> held;
  held.reserve(lists.size());
  for (const LootNames list : lists) held.push_back(&FindListed(list).items);
  const auto longest = std::ranges::max_element(
      held, {}, [](const std::vector<Item>* items) { return items->size(); });
  std::vector<std::pair<Item, uint32_t>> takers;
  for (uint32_t i = 0; i < held.size(); ++i) {
    if (held[i] == *longest) continue;
    for (const Item item : *held[i]) takers.emplace_back(item, i);
  }
  std::ranges::sort(takers);
  for (auto taker = takers.begin(); taker != takers.end();) {
    const Item item = taker->first;
    std::vector<uint32_t> demands;
    for (; taker != takers.end() && taker->first == item; ++taker) demands.push_back(taker->second);
    if (std::ranges::binary_search(**longest, item)) {
      const auto last = static_cast<uint32_t>(longest - held.begin());
      demands.insert(std::ranges::lower_bound(demands, last), last);
    }
    if (demands.size() > 1) shared[item->refId][std::move(demands)] += std::max(item->count, 0);
  }
  return shared;
}

}  // namespace Kest::Client::Loot
