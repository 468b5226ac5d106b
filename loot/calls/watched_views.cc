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
  const auto publish = [this](auto* lastPublished, const char* prefix, const char* suffix,
                              const auto& build) {
    for (auto& [lootId, last] : *lastPublished) {
      auto view = build(lootId);
      if (view == last) continue;
      last = std::move(view);
      client_.Publish(prefix + lootId + suffix, ResourceEventType::kUpdate, last);
    }
  };
  publish(&recipes_, "/tav-loot/v1/recipes/initial-item/", "",
          [this](const std::string& lootId) { return recipeViews_.InitialItemRecipes(lootId); });
  if (contextMenus_.empty()) return;
  LootCounts counts(store_.items());
  publish(&contextMenus_, "/tav-loot/v1/player-loot/", "/context-menu",
          [&](const std::string& lootId) { return menus_.MenuOf(lootId, counts); });
}

}  // namespace Kest::Client::Loot
