#include "loot/state/context_menus.h"

#include <algorithm>
#include <limits>

#include "loot/model/loot_constants.h"
#include "loot/model/ownership_rules.h"

namespace Kest::Client::Loot {
namespace {

Api::ContextMenu RedeemEntry(bool enabled) {
  Api::ContextMenu entry;
  entry.name = "REDEEM";
  entry.actionType = "REDEEM";
  entry.enabled = enabled;
  return entry;
}

int32_t ClampToInt32(int64_t quantity) {
  return static_cast<int32_t>(std::min<int64_t>(quantity, std::numeric_limits<int32_t>::max()));
}

void SetEssence(const std::vector<Ingredient>& ingredients, Api::ContextMenu* entry) {
  int64_t quantity = 0;
  for (const Ingredient& ingredient : ingredients) {
    const std::string_view essence = ingredient.essence;
    if (entry->essenceType.empty()) entry->essenceType = essence;
    if (!essence.empty() && essence == entry->essenceType) quantity += ingredient.quantity;
  }
  entry->essenceQuantity = ClampToInt32(quantity);
}

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += ',';
    joined += text;
  }
  return joined;
}

}  // namespace

std::vector<Api::ContextMenu> ContextMenus::MenuOf(const std::string& lootId,
                                                   LootCounts& counts) const {
  std::vector<Api::ContextMenu> menu;
  const Api::PlayerLootPointer item = store_.Find(lootId);
  if (item == nullptr) return menu;
  if (AllHold(OfferConditions(*item))) menu.push_back(RedeemEntry(loot_.Enabled()));
  for (const IndexedRecipe* recipe : recipes_.FindInitialItemRecipes(lootId)) {
    menu.push_back(RecipeEntry(*recipe->recipe, counts.FindNeeds(*recipe, item->refId)));
  }
  return menu;
}

Conditions<2> ContextMenus::CraftConditions(const LootSwitch& loot, const CraftNeeds& needs) {
  return {{{"isLootEnabled", loot.Enabled(), "Loot is enabled.", "Loot is disabled."},
           {"isMet", needs.IsMet(), "Every slot gets its quantity.",
            "A slot does not get its quantity."}}};
}

Api::ContextMenu ContextMenus::RecipeEntry(const SVDS::LootSvdsRecipeClientDTO& recipe,
                                           const CraftNeeds& needs) const {
  const std::vector<Ingredient>& ingredients = needs.ingredients;
  Api::ContextMenu entry;
  entry.name = recipe.recipeName;
  entry.actionType = recipe.type;
  if (const auto* texts = gameData_.FindLootRecipe(recipe.recipeName)) {
    entry.recipeDescription = texts->description;
    entry.recipeContextMenuAction = texts->contextMenuText;
  }
  entry.enabled = AllHold(CraftConditions(loot_, needs));
  const bool upgradesToken = Contains(kTokenUpgradeRecipeTypes, recipe.type);
  if (upgradesToken) entry.requiredTokens = std::to_string(ingredients.front().missing);
  SetEssence(ingredients, &entry);
  SetOthers(ingredients, upgradesToken, &entry);
  return entry;
}

void ContextMenus::SetOthers(const std::vector<Ingredient>& ingredients, bool upgradesToken,
                             Api::ContextMenu* entry) const {
  const Ingredient* others = nullptr;
  for (const Ingredient& ingredient : ingredients) {
    const bool isFirst = &ingredient == &ingredients.front();
    if ((isFirst && upgradesToken) || !ingredient.essence.empty()) continue;
    if (ingredient.missing > 0) {
      others = &ingredient;
      break;
    }
    if (!isFirst && others == nullptr) others = &ingredient;
  }
  if (others == nullptr) return;
  entry->requiredOthers = Join(*others->lootNames);
  if (!others->lootNames->empty()) entry->requiredOthersName = NameOf(others->lootNames->front());
  entry->requiredOthersCount = ClampToInt32(others->missing);
}

std::string ContextMenus::NameOf(const std::string& lootId) const {
  const Api::LootItemGdsResource* texts = gameData_.FindLootItem(lootId);
  return texts == nullptr || texts->name.empty() ? lootId : texts->name;
}

}  // namespace Kest::Client::Loot
