// WatchedViews answers the recipe lists and context menus, and tells the front end when one that it
// has read changes: a view is watched from its first read on. At most 16,384 lists and as many
// menus are watched; further ones are answered all the same. Threads: handlers and module tasks
// only; it does not wait.
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
      : client_(client), state_(state), recipeViews_(state), menus_(state, recipeViews_) {}

  // Each answers the view as it stands and watches it.
  std::vector<Api::Recipe> ReadRecipes(const std::string& lootId);
  std::vector<Api::ContextMenu> ReadContextMenu(const std::string& lootId);

  // Publishes an "Update" of each watched view that differs from what was last published, or else
  // first read. A publication of the store ends with it.
  void PublishChanges();

 private:
  template <class View>
  using LastPublished =
      std::unordered_map<std::string, View>;  // by loot id: what every follower knows

  SiblingClient& client_;
  const LootState& state_;
  RecipeViews recipeViews_;
  ContextMenus menus_;
  LastPublished<std::vector<Api::Recipe>> recipes_;
  LastPublished<std::vector<Api::ContextMenu>> contextMenus_;
};

}  // namespace Kest::Client::Loot
