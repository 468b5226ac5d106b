// ContextMenus builds what the player may do with an item: redeem it, or use it in a recipe. An
// entry is enabled when the platform would take it: loot is enabled, and of a recipe the player
// holds what one craft takes (see LootCounts). Threads: module tasks only.
#pragma once

#include <string>
#include <vector>

#include "loot/model/condition.h"
#include "loot/model/game_data.h"
#include "loot/state/loot_counts.h"
#include "loot/state/loot_switch.h"
#include "loot/state/player_loot_store.h"
#include "loot/state/recipe_views.h"

namespace Kest::Client::Loot {

class ContextMenus {
 public:
  // All outlive it.
  ContextMenus(const LootSwitch& loot, const PlayerLootStore& store, const GameData& gameData,
               const RecipeViews& recipes)
      : loot_(loot), store_(store), gameData_(gameData), recipes_(recipes) {}

  // "REDEEM" first when the item can be redeemed, then one entry for each recipe that takes the
  // item as its first ingredient, in the definitions' order. An item that is not stored has no
  // menu. A menu follows from the loot switch, the items, the definitions and the game data.
  // `counts` is of the store as it is now.
  std::vector<Api::ContextMenu> MenuOf(const std::string& lootId, LootCounts& counts) const;

  // What an entry of a recipe needs to be enabled.
  static Conditions<2> CraftConditions(const LootSwitch& loot, const CraftNeeds& needs);

 private:
  Api::ContextMenu RecipeEntry(const SVDS::LootSvdsRecipeClientDTO& recipe,
                               const CraftNeeds& needs) const;
  // Names the first ingredient that is missing, tokens to upgrade and essences aside; else the
  // first that is taken beside the item.
  void SetOthers(const std::vector<Ingredient>& ingredients, bool upgradesToken,
                 Api::ContextMenu* entry) const;
  std::string NameOf(const std::string& lootId) const;

  const LootSwitch& loot_;
  const PlayerLootStore& store_;
  const GameData& gameData_;
  const RecipeViews& recipes_;
};

}  // namespace Kest::Client::Loot
