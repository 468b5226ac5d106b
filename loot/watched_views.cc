#include "loot/watched_views.h"

#include <utility>

namespace Kest::Client::Loot {

const std::vector<Api::Recipe>& WatchedViews::ReadRecipes(const std::string& lootId) {
  return recipes_[lootId] = recipeViews_.InitialItemRecipes(lootId);
}

const std::vector<Api::ContextMenu>& WatchedViews::ReadContextMenu(const std::string& lootId) {
  return contextMenus_[lootId] = menus_.MenuOf(lootId, LootCounts(state_.store.items()));
}

void WatchedViews::PublishChanges() {
  for (auto& [lootId, told] : recipes_) {
    std::vector<Api::Recipe> now = recipeViews_.InitialItemRecipes(lootId);
    if (now == told) continue;
    told = std::move(now);
    client_.Publish("/tav-loot/v1/recipes/initial-item/" + lootId, ResourceEventType::kUpdate,
                    told);
  }
  if (contextMenus_.empty()) return;
  const LootCounts counts(state_.store.items());
  for (auto& [lootId, told] : contextMenus_) {
    std::vector<Api::ContextMenu> now = menus_.MenuOf(lootId, counts);
    if (now == told) continue;
    told = std::move(now);
    client_.Publish("/tav-loot/v1/player-loot/" + lootId + "/context-menu",
                    ResourceEventType::kUpdate, told);
  }
}

}  // namespace Kest::Client::Loot
