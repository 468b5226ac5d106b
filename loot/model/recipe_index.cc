#include "loot/model/recipe_index.h"

#include <algorithm>

#include "log/logger.h"
#include "loot/model/loot_constants.h"
#include "loot/model/quantity_expression.h"

namespace Kest::Client::Loot {
namespace {

using SVDS::LootSvdsRecipeClientDTO;

int32_t ReadQuantity(const LootSvdsRecipeClientDTO& recipe, const std::string& expression) {
  const std::optional<int32_t> quantity = EvaluateQuantity(expression);
  if (!quantity) {
    LogWarning("Loot recipe %s has an unreadable quantity: %s", recipe.recipeName.c_str(),
               expression.c_str());
  }
  return quantity.value_or(0);
}

// The names a slot lists. A result that is neither a list nor a string counts as missing.
std::vector<std::string> FindLootNames(std::string_view query,
                                       const BindingProperty& queryToLootNames,
                                       const LootItemDefinitions& items) {
  std::vector<std::string> names;
  const BindingProperty* held = queryToLootNames.FindMember(query);
  if (held != nullptr && held->kind() == BindingKind::kString) {
    names.emplace_back(held->AsString());
  } else if (held != nullptr && held->kind() == BindingKind::kCollection) {
    for (size_t i = 0; i < held->Size(); ++i) {
      const BindingProperty* name = held->FindElement(i);
      if (name->kind() == BindingKind::kString) names.emplace_back(name->AsString());
    }
  } else if (items.Find(query) != nullptr) {
    names.emplace_back(query);
  }
  return names;
}

}  // namespace

RecipeIndex::RecipeIndex(const std::vector<LootSvdsRecipeClientDTO>& recipes,
                         const BindingProperty& queryToLootNames,
                         const LootItemDefinitions& items) {
  recipes_.reserve(recipes.size());
  for (const LootSvdsRecipeClientDTO& recipe : recipes) {
    IndexedRecipe indexed{.recipe = &recipe,
                          .place = static_cast<uint32_t>(recipes_.size()),
                          .slots = {},
                          .outputQuantities = {}};
    for (const auto& slot : recipe.slots) {
      const Query& query = GetOrAddQuery(slot.query, queryToLootNames, items);
      indexed.slots.push_back(
          {&slot, &query.lootNames, ReadQuantity(recipe, slot.quantityExpression)});
    }
    std::stable_sort(indexed.slots.begin(), indexed.slots.end(),
                     [](const IndexedSlot& left, const IndexedSlot& right) {
                       return left.slot->slotNumber < right.slot->slotNumber;
                     });
    for (const auto& output : recipe.outputs) {
      indexed.outputQuantities.push_back(ReadQuantity(recipe, output.quantityExpression));
    }
    recipes_.push_back(std::move(indexed));
    EnterRecipe(recipes_.back());
  }
}

RecipeIndex::Query& RecipeIndex::GetOrAddQuery(std::string_view text,
                                               const BindingProperty& queryToLootNames,
                                               const LootItemDefinitions& items) {
  const auto [entry, isNew] = queries_.try_emplace(text);
  Query& query = entry->second;
  if (!isNew) return query;
  query.lootNames = FindLootNames(text, queryToLootNames, items);
  for (const std::string& name : query.lootNames) {
    if (Contains(kCurrencyLootIds, name)) query.lastCurrencyId = name;
    auto& listing = queriesByLootName_[name];
    if (listing.empty() || listing.back() != &query) listing.push_back(&query);
  }
  return query;
}

void RecipeIndex::EnterRecipe(const IndexedRecipe& indexed) {
  const uint32_t place = indexed.place;
  const LootSvdsRecipeClientDTO& recipe = *indexed.recipe;
  std::optional<DisenchantOffer> disenchant;
  if (recipe.type == kDisenchant && !recipe.outputs.empty()) {
    disenchant = {recipe.outputs[0].lootName, indexed.outputQuantities[0], place};
  }
  std::optional<UpgradeOffer> upgrade;
  for (const IndexedSlot& slot : indexed.slots) {
    Query& query = queries_.find(slot.slot->query)->second;
    if (&slot == &indexed.slots.front()) query.firstRecipes.push_back(place);
    if (query.recipes.empty() || query.recipes.back() != place) query.recipes.push_back(place);
    if (disenchant && (!query.disenchant || disenchant->quantity > query.disenchant->quantity)) {
      query.disenchant = disenchant;
    }
    if (recipe.type == kUpgrade && !query.lastCurrencyId.empty()) {
      upgrade = {query.lastCurrencyId, slot.quantity, place};
    }
  }
  if (!upgrade) return;
  for (const IndexedSlot& slot : indexed.slots) {
    queries_.find(slot.slot->query)->second.upgrade = upgrade;
  }
}

template <class Visit>
void RecipeIndex::ForEachQueryListing(std::string_view lootName, std::string_view lootId,
                                      Visit visit) const {
  const auto visitAll = [&](std::string_view name) {
    const auto found = queriesByLootName_.find(name);
    if (found == queriesByLootName_.end()) return;
    for (const Query* query : found->second) visit(*query);
  };
  visitAll(lootName);
  if (lootId != lootName) visitAll(lootId);
}

std::vector<const IndexedRecipe*> RecipeIndex::RecipesTakingFirst(std::string_view lootName,
                                                                  std::string_view lootId) const {
  std::vector<uint32_t> gathered;
  ForEachQueryListing(lootName, lootId, [&](const Query& query) {
    gathered.insert(gathered.end(), query.firstRecipes.begin(), query.firstRecipes.end());
  });
  std::sort(gathered.begin(), gathered.end());
  gathered.erase(std::unique(gathered.begin(), gathered.end()), gathered.end());
  std::vector<const IndexedRecipe*> taking;
  taking.reserve(gathered.size());
  for (const uint32_t place : gathered) taking.push_back(&recipes_[place]);
  return taking;
}

std::vector<uint32_t> RecipeIndex::RecipesTaking(std::string_view lootName,
                                                 std::string_view lootId) const {
  std::vector<uint32_t> places;
  ForEachQueryListing(lootName, lootId, [&](const Query& query) {
    places.insert(places.end(), query.recipes.begin(), query.recipes.end());
  });
  return places;
}

std::optional<DisenchantOffer> RecipeIndex::FindDisenchant(std::string_view lootName,
                                                           std::string_view lootId) const {
  std::optional<DisenchantOffer> best;
  ForEachQueryListing(lootName, lootId, [&](const Query& query) {
    const auto& offer = query.disenchant;
    if (!offer) return;
    const bool better = !best || offer->quantity > best->quantity ||
                        (offer->quantity == best->quantity && offer->recipe < best->recipe);
    if (better) best = offer;
  });
  return best;
}

std::optional<UpgradeOffer> RecipeIndex::FindUpgrade(std::string_view lootName,
                                                     std::string_view lootId) const {
  std::optional<UpgradeOffer> last;
  ForEachQueryListing(lootName, lootId, [&](const Query& query) {
    if (query.upgrade && (!last || query.upgrade->recipe > last->recipe)) last = query.upgrade;
  });
  return last;
}

}  // namespace Kest::Client::Loot
