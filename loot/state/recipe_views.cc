#include "loot/state/recipe_views.h"

#include <utility>

#include "loot/model/loot_id.h"

namespace Kest::Client::Loot {
namespace {

std::vector<Api::LootDescription> ShowDescriptions(
    const std::vector<SVDS::LootSvdsLootDescriptionDTO>& descriptions) {
  std::vector<Api::LootDescription> shown;
  shown.reserve(descriptions.size());
  for (const auto& description : descriptions) {
    shown.push_back({description.lootName, description.childLootTableNames,
                     description.localizationMap, description.localizationLongDescriptionMap});
  }
  return shown;
}

Api::Recipe ShowRecipe(const IndexedRecipe& indexed, const Api::LootRecipeGdsResource* texts) {
  const SVDS::LootSvdsRecipeClientDTO& recipe = *indexed.recipe;
  Api::Recipe shown;
  shown.recipeName = recipe.recipeName;
  shown.type = recipe.type;
  shown.displayCategories = recipe.displayCategories;
  shown.crafterName = recipe.crafterName;
  if (texts != nullptr) {
    shown.description = texts->description;
    shown.contextMenuText = texts->contextMenuText;
    shown.requirementText = texts->requirementText;
    shown.imagePath = texts->imagePath;
  }
  for (const IndexedSlot& slot : indexed.slots) {
    shown.slots.push_back(
        {slot.slot->slotNumber, *slot.lootNames, slot.slot->query, slot.quantity});
  }
  for (size_t i = 0; i < recipe.outputs.size(); ++i) {
    shown.outputs.push_back({recipe.outputs[i].lootName, indexed.outputQuantities[i]});
  }
  shown.metadata.guaranteedDescriptions = ShowDescriptions(recipe.metadata.guaranteedDescriptions);
  shown.metadata.bonusDescriptions = ShowDescriptions(recipe.metadata.bonusDescriptions);
  shown.metadata.tooltipsDisabled = recipe.metadata.tooltipsDisabled;
  return shown;
}

}  // namespace

std::vector<const IndexedRecipe*> RecipeViews::FindInitialItemRecipes(
    const std::string& lootId) const {
  const RecipeIndex& recipes = state_.definitions->recipes();
  if (const Api::PlayerLootPointer item = state_.store.Find(lootId)) {
    return recipes.RecipesTakingFirst(item->lootName, lootId);
  }
  return recipes.RecipesTakingFirst(SplitLootId(lootId).lootName, lootId);
}

std::vector<Api::Recipe> RecipeViews::Show(const std::vector<const IndexedRecipe*>& recipes) const {
  std::vector<Api::Recipe> shown;
  shown.reserve(recipes.size());
  for (const IndexedRecipe* recipe : recipes) {
    shown.push_back(
        ShowRecipe(*recipe, state_.gameData.FindLootRecipe(recipe->recipe->recipeName)));
  }
  return shown;
}

}  // namespace Kest::Client::Loot
