#include "loot/watched_views.h"

#include <utility>

namespace Kest::Client::Loot {

namespace {

constexpr size_t kMostWatched = 16'384;

// A later read is no news to those who follow the events, so the first one stays.
template <class Told, class View>
View Watch(Told* told, const std::string& lootId, View view) {
  if (told->size() < kMostWatched) told->try_emplace(lootId, view);
  return view;
}

}  // namespace

std::vector<Api::Recipe> WatchedViews::ReadRecipes(const std::string& lootId) {
  return Watch(&recipes_, lootId, recipeViews_.InitialItemRecipes(lootId));
}

std::vector<Api::ContextMenu> WatchedViews::ReadContextMenu(const std::string& lootId) {
  LootCounts counts(state_.store.items());
  return Watch(&contextMenus_, lootId, menus_.MenuOf(lootId, counts));
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
  LootCounts counts(state_.store.items());
  for (auto& [lootId, told] : contextMenus_) {
    std::vector<Api::ContextMenu> now = menus_.MenuOf(lootId, counts);
    if (now == told) continue;
    told = std::move(now);
    client_.Publish("/tav-loot/v1/player-loot/" + lootId + "/context-menu",
                    ResourceEventType::kUpdate, told);
  }
}

}  // namespace Kest::Client::Loot
