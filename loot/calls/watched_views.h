// WatchedViews returns recipe lists and context menus, and publishes each that changes after it was
// first read. At most 16,384 lists and as many menus are watched; further ones are only returned.
// Threads: module tasks only; it does not wait.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "client/sibling_client.h"
#include "loot/state/context_menus.h"

namespace Kest::Client::Loot {

class WatchedViews {
 public:
  // Borrows both, which outlive it.
  WatchedViews(SiblingClient& client, const LootState& state)
      : client_(client),
        store_(state.store),
        recipeViews_(state),
        menus_(state.store, state.gameData, recipeViews_) {}

  // Each returns the view as it is now, and watches it.
  std::vector<Api::Recipe> ReadRecipes(const std::string& lootId);
  std::vector<Api::ContextMenu> ReadContextMenu(const std::string& lootId);

  // Publishes an "Update" of each watched view that differs from what was last published, or else
  // first read.
  void PublishChanges();

 private:
  template <class View>
  using LastPublished = std::unordered_map<std::string, View>;  // by loot id

  SiblingClient& client_;
  const PlayerLootStore& store_;
  RecipeViews recipeViews_;
  ContextMenus menus_;
  LastPublished<std::vector<Api::Recipe>> recipes_;
  LastPublished<std::vector<Api::ContextMenu>> contextMenus_;
};

}  // namespace Kest::Client::Loot
