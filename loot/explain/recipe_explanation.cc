#include "loot/explain/recipe_explanation.h"

#include <algorithm>
#include <set>
#include <utility>

#include "loot/calls/loot_retrieval.h"
#include "loot/explain/condition_tree.h"
#include "loot/model/decision_trace.h"
#include "loot/state/context_menus.h"
#include "loot/state/loot_counts.h"
#include "loot/state/loot_state.h"

namespace Kest::Client::Loot {
namespace {

constexpr size_t kMostListed = 100;

// The first of a list that may have thousands.
template <class List>
BindingProperty FirstOf(const List& list) {
  std::vector<std::string> first(list.begin(), list.begin() + std::min(list.size(), kMostListed));
  return ValueTree(first);
}

// The items that a craft may use.
struct Offered {
  Api::PlayerLootItems items;
  std::vector<std::string> notHeld;
};

Offered OfferOf(const std::vector<std::string>& lootIds, const PlayerLootStore& store) {
  Offered offered;
  for (const std::string& lootId : lootIds) {
    if (Api::PlayerLootPointer item = store.Find(lootId)) {
      offered.items[lootId] = std::move(item);
    } else {
      offered.notHeld.push_back(lootId);
    }
  }
  return offered;
}

BindingProperty SlotsTree(const IndexedRecipe& recipe, const Ingredient& ingredient) {
  BindingProperty slots = BindingProperty::Collection();
  for (const IndexedSlot& slot : recipe.slots) {
    if (slot.lootNames != ingredient.lootNames) continue;
    slots.Append() = Structure{{"slotNumber", slot.slot->slotNumber},
                               {"query", slot.slot->query},
                               {"quantity", slot.quantity}};
  }
  return slots;
}

// An item of another reference id fits, but does not go together with the others.
bool GoesWith(const Api::PlayerLoot& item, const CraftNeeds& needs) {
  return item.refId.empty() || item.refId == needs.refId;
}

std::string_view ReasonOf(const Ingredient& ingredient, bool hasFitting) {
  if (ingredient.lootNames->empty()) return "It takes nothing that is defined.";
  if (ingredient.missing == 0) return "It gets its quantity.";
  if (!hasFitting) return "No item fits.";
  return "Too few items fit that go together, or other slots need them as well.";
}

BindingProperty IngredientTree(const IndexedRecipe& recipe, const Ingredient& ingredient,
                               const CraftNeeds& needs, LootCounts& counts) {
  std::vector<LootCounts::Item> fitting = counts.FindFitting(ingredient.lootNames);
  std::ranges::sort(fitting, {}, &Api::PlayerLoot::lootId);
  BindingProperty fits = BindingProperty::Collection();
  for (const LootCounts::Item item : fitting) {
    if (fits.Size() == kMostListed) break;
    fits.Append() = Structure{{"lootId", item->lootId},
                              {"count", item->count},
                              {"goesWithTheOthers", GoesWith(*item, needs)}};
  }
  return Structure{{"slots", SlotsTree(recipe, ingredient)},
                   {"reason", ReasonOf(ingredient, !fitting.empty())},
                   {"quantity", ingredient.quantity},
                   {"missing", ingredient.missing},
                   {"takes", FirstOf(*ingredient.lootNames)},
                   {"takesInAll", uint64_t{ingredient.lootNames->size()}},
                   {"fits", fits},
                   {"fitsInAll", uint64_t{fitting.size()}}};
}

// Ids of offered items that fit no slot.
BindingProperty UnusedOf(const Offered& offered, const CraftNeeds& needs, LootCounts& counts) {
  std::set<std::string> unused;
  for (const auto& [lootId, item] : offered.items) unused.insert(lootId);
  for (const Ingredient& ingredient : needs.ingredients) {
    for (const LootCounts::Item item : counts.FindFitting(ingredient.lootNames)) {
      unused.erase(item->lootId);
    }
  }
  return ValueTree(std::vector<std::string>(unused.begin(), unused.end()));
}

BindingProperty ExplainKnown(const IndexedRecipe& recipe, const Api::PlayerLootItems& items,
                             const Offered* offered, const LootSwitch& loot) {
  LootCounts counts(items);
  const CraftNeeds& needs = counts.FindNeeds(recipe, {});
  BindingProperty ingredients = BindingProperty::Collection();
  for (const Ingredient& ingredient : needs.ingredients) {
    ingredients.Append() = IngredientTree(recipe, ingredient, needs, counts);
  }
  const auto conditions = ContextMenus::CraftConditions(loot, needs);
  Structure tree{{"recipeName", recipe.recipe->recipeName},
                 {"isKnown", true},
                 {"canCraft", AllHold(conditions)},
                 {"reason", Loot::ReasonOf(conditions, "Every slot gets its quantity.")},
                 {"conditions", ConditionsTree(conditions)},
                 {"refId", needs.refId},
                 {"ingredients", ingredients}};
  if (offered == nullptr) return tree;
  tree.GetOrAddMember("notHeld") = ValueTree(offered->notHeld);
  tree.GetOrAddMember("fitNoSlot") = UnusedOf(*offered, needs, counts);
  return tree;
}

}  // namespace

BindingProperty ExplainRecipe(std::string_view recipeName,
                              const std::optional<std::vector<std::string>>& lootIds,
                              const LootState& state, const LootRetrieval& retrieval,
                              const LootSwitch& loot) {
  const std::vector<IndexedRecipe>& recipes = state.definitions->recipes().recipes();
  const auto recipe = std::ranges::find_if(recipes, [recipeName](const IndexedRecipe& one) {
    return one.recipe->recipeName == recipeName;
  });
  if (recipe == recipes.end()) {
    return Structure{{"recipeName", recipeName},
                     {"isKnown", false},
                     {"canCraft", false},
                     {"reason", retrieval.Pending() ? "No definitions were retrieved yet."
                                                    : "There is no recipe of this name."}};
  }
  if (!lootIds) return ExplainKnown(*recipe, state.store.items(), nullptr, loot);
  const Offered offered = OfferOf(*lootIds, state.store);
  return ExplainKnown(*recipe, offered.items, &offered, loot);
}

}  // namespace Kest::Client::Loot
