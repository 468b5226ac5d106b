#include "loot/state/context_menus.h"

#include <algorithm>
#include <utility>

#include "loot/model/loot_constants.h"

namespace Kest::Client::Loot {
namespace {

bool IsRedeemable(const Api::PlayerLoot& item) {
  return Contains(kContextMenuTypes, item.type) &&
         (item.redeemableStatus == Api::RedeemableStatus::kRedeemable ||
          item.redeemableStatus == Api::RedeemableStatus::kRedeemableRental);
}

Api::ContextMenu RedeemEntry() {
  Api::ContextMenu entry;
  entry.name = "REDEEM";
  entry.actionType = "REDEEM";
  entry.enabled = true;
  return entry;
}

// The essence a slot takes; empty when it takes none.
std::string EssenceOf(const IndexedSlot& slot) {
  const auto found =
      std::find_if(slot.lootNames->begin(), slot.lootNames->end(),
                   [](const std::string& name) { return Contains(kCurrencyLootIds, name); });
  return found == slot.lootNames->end() ? std::string() : *found;
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
  if (IsRedeemable(*item)) menu.push_back(RedeemEntry());
  for (const IndexedRecipe* recipe : recipes_.FindInitialItemRecipes(lootId)) {
    menu.push_back(RecipeEntry(*recipe, counts));
  }
  return menu;
}

Api::ContextMenu ContextMenus::RecipeEntry(const IndexedRecipe& indexed, LootCounts& counts) const {
  const SVDS::LootSvdsRecipeClientDTO& recipe = *indexed.recipe;
  Api::ContextMenu entry;
  entry.name = recipe.recipeName;
  entry.actionType = recipe.type;
  if (const auto* texts = gameData_.FindLootRecipe(recipe.recipeName)) {
    entry.recipeDescription = texts->description;
    entry.recipeContextMenuAction = texts->contextMenuText;
  }
  entry.enabled = true;
  bool hasOthers = false;
  for (const IndexedSlot& slot : indexed.slots) {
    const bool isFirst = &slot == &indexed.slots.front();
    if (counts.Sum(*slot.lootNames) < slot.quantity) entry.enabled = false;
    if (isFirst && Contains(kTokenUpgradeRecipeTypes, recipe.type)) {
      entry.requiredTokens = std::to_string(slot.quantity);
    }
    const std::string essence = EssenceOf(slot);
    if (!essence.empty()) {
      if (entry.essenceType.empty()) {
        entry.essenceType = essence;
        entry.essenceQuantity = slot.quantity;
      }
    } else if (!isFirst && !hasOthers) {
      hasOthers = true;
      entry.requiredOthers = Join(*slot.lootNames);
      if (!slot.lootNames->empty()) entry.requiredOthersName = NameOf(slot.lootNames->front());
      entry.requiredOthersCount = slot.quantity;
    }
  }
  return entry;
}

std::string ContextMenus::NameOf(const std::string& lootId) const {
  const Api::LootItemGdsResource* texts = gameData_.FindLootItem(lootId);
  return texts == nullptr || texts->name.empty() ? lootId : texts->name;
}

}  // namespace Kest::Client::Loot
