#include "loot/calls/watched_views.h"

#include <utility>

namespace Kest::Client::Loot {

namespace {

constexpr size_t kMostWatched = 16'384;

// The first read is kept: a later one does not inform the subscribers.
template <class LastPublished, class View>
View Watch(LastPublished* lastPublished, const std::string& lootId, View view) {
  if (lastPublished->size() < kMostWatched) lastPublished->try_emplace(lootId, view);
  return view;
}

}  // namespace

std::vector<Api::Recipe> WatchedViews::ReadRecipes(const std::string& lootId) {
  return Watch(&recipes_, lootId, recipeViews_.InitialItemRecipes(lootId));
}

std::vector<Api::ContextMenu> WatchedViews::ReadContextMenu(const std::string& lootId) {
  LootCounts counts(store_.items());
  return Watch(&contextMenus_, lootId, menus_.MenuOf(lootId, counts));
}

void WatchedViews::PublishChanges() {
  for (auto& [lootId, lastPublished] : recipes_) {
    std::vector<Api::Recipe> now = recipeViews_.InitialItemRecipes(lootId);
    if (now == lastPublished) continue;
    lastPublished = std::move(now);
    client_.Publish("/tav-loot/v1/recipes/initial-item/" + lootId, ResourceEventType::kUpdate,
                    lastPublished);
  }
  if (contextMenus_.empty()) return;
  LootCounts counts(store_.items());
  for (auto& [lootId, lastPublished] : contextMenus_) {
    std::vector<Api::ContextMenu> now = menus_.MenuOf(lootId, counts);
    if (now == lastPublished) continue;
    lastPublished = std::move(now);
    client_.Publish("/tav-loot/v1/player-loot/" + lootId + "/context-menu",
                    ResourceEventType::kUpdate, lastPublished);
  }
}

}  // namespace Kest::Client::Loot
