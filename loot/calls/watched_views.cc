#include "loot/calls/watched_views.h"

#include <string_view>
#include <unordered_set>
#include <utility>

#include "base/utf8.h"
#include "binding/json/json_adapter.h"
#include "client/sibling_client.h"

namespace Kest::Client::Loot {

namespace {

constexpr size_t kMostWatched = 16'384;
constexpr uint64_t kHashOfNothing = 0xcbf29ce484222325;

// FNV-1a, the same on every platform.
uint64_t Hash(std::string_view bytes, uint64_t hash = kHashOfNothing) {
  for (const char byte : bytes) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  return hash;
}

template <class T>
uint64_t HashOfJson(const T& value) {
  ConversionContext context;
  std::string json;
  WriteJsonValue(context, value, &json);
  return Hash(json);
}

}  // namespace

// What the changes of a publication can touch.
class WatchedViews::Touched {
 public:
  Touched(const PlayerLootChanges& changes, const RecipeIndex& recipes)
      : recipes_(recipes.recipes().size()) {
    for (const PlayerLootChanges::Written& written : changes.written) {
      Add(*written.item, recipes);
      if (written.isCreated) comeAndGone_.insert(written.item->lootId);
    }
    for (const Api::PlayerLootPointer& item : changes.removed) {
      Add(*item, recipes);
      comeAndGone_.insert(item->lootId);
    }
  }

  // A list is found by the item's loot name, or, without the item, by its id.
  bool Recipes(const std::string& lootId) const { return comeAndGone_.contains(lootId); }
  // A menu shows the item, and what of its recipes' slots the player has.
  bool Menu(const std::string& lootId, const std::vector<const IndexedRecipe*>& recipes) const {
    if (ids_.contains(lootId)) return true;
    for (const IndexedRecipe* recipe : recipes) {
      if (recipes_[recipe->place]) return true;
    }
    return false;
  }

 private:
  void Add(const Api::PlayerLoot& item, const RecipeIndex& recipes) {
    ids_.insert(item.lootId);
    for (const uint32_t place : recipes.RecipesTaking(item.lootName, item.lootId)) {
      recipes_[place] = true;
    }
  }

  std::vector<bool> recipes_;  // by place
  std::unordered_set<std::string_view> ids_;
  std::unordered_set<std::string_view> comeAndGone_;
};

WatchedViews::Basis WatchedViews::CurrentBasis() const {
  return {state_.definitions, state_.gameData.revision(), loot_.Enabled()};
}

WatchedViews::Watched* WatchedViews::Watch(const std::string& lootId, bool hasRecipe) {
  if (!hasRecipe && state_.store.Find(lootId) == nullptr) return nullptr;
  if (!IsValidUtf8(lootId)) return nullptr;
  Watched& watched = watched_[lootId];
  if (state_.store.HasChanges()) watched.isUnsure = hasUnsure_ = true;
  return &watched;
}

uint64_t WatchedViews::HashOf(const std::vector<const IndexedRecipe*>& recipes) {
  if (Basis basis = CurrentBasis(); !(basis == hashed_)) {
    recipeHashes_.assign(basis.definitions->recipes().recipes().size(), 0);
    hashed_ = std::move(basis);
  }
  uint64_t hash = kHashOfNothing;
  for (const IndexedRecipe* recipe : recipes) {
    uint64_t& known = recipeHashes_[recipe->place];
    if (known == 0) known = HashOfJson(recipeViews_.Show({recipe}));
    hash = Hash({reinterpret_cast<const char*>(&known), sizeof known}, hash);
  }
  return hash;
}

std::vector<Api::Recipe> WatchedViews::ReadRecipes(const std::string& lootId) {
  const auto recipes = recipeViews_.FindInitialItemRecipes(lootId);
  if (recipesWatched_ < kMostWatched) {
    Watched* const watched = Watch(lootId, !recipes.empty());
    if (watched != nullptr && !watched->recipes) {
      watched->recipes = HashOf(recipes);
      ++recipesWatched_;
    }
  }
  return recipeViews_.Show(recipes);
}

std::vector<Api::ContextMenu> WatchedViews::ReadContextMenu(const std::string& lootId) {
  const auto store = state_.store.Snapshot();
  LootCounts counts(store->playerLoot);
  auto menu = menus_.MenuOf(lootId, counts);
  if (menusWatched_ < kMostWatched) {
    Watched* const watched = Watch(lootId, !recipeViews_.FindInitialItemRecipes(lootId).empty());
    if (watched != nullptr && !watched->menu) {
      watched->menu = HashOfJson(menu);
      ++menusWatched_;
    }
  }
  return menu;
}

WatchedViews::Draft WatchedViews::FindChanges(const PlayerLootChanges& changes,
                                              std::vector<PublicationStep>* steps) {
  Draft draft;
  draft.basis = CurrentBasis();
  const bool isAllTouched = !(draft.basis == published_);
  if (watched_.empty() || (!isAllTouched && !hasUnsure_ && !changes.Any())) return draft;
  const Touched touched(changes, state_.definitions->recipes());
  const auto compare = [&](std::optional<uint64_t>* last, uint64_t hash, const std::string& path,
                           const auto& build) {
    if (**last == hash) return;
    steps->push_back({client_.MakeChange(path, ResourceEventType::kUpdate, build())});
    draft.hashes.push_back({last, hash});
  };
  for (auto& [lootId, watched] : watched_) {
    if (!watched.recipes) continue;
    if (!isAllTouched && !watched.isUnsure && !touched.Recipes(lootId)) continue;
    const auto recipes = recipeViews_.FindInitialItemRecipes(lootId);
    compare(&watched.recipes, HashOf(recipes), "/tav-loot/v1/recipes/initial-item/" + lootId,
            [&] { return recipeViews_.Show(recipes); });
  }
  if (menusWatched_ == 0) return draft;
  const auto store = state_.store.Snapshot();
  LootCounts counts(store->playerLoot);
  for (auto& [lootId, watched] : watched_) {
    if (!watched.menu) continue;
    if (!isAllTouched && !watched.isUnsure &&
        !touched.Menu(lootId, recipeViews_.FindInitialItemRecipes(lootId))) {
      continue;
    }
    auto menu = menus_.MenuOf(lootId, counts);
    compare(&watched.menu, HashOfJson(menu), "/tav-loot/v1/player-loot/" + lootId + "/context-menu",
            [&] { return std::move(menu); });
  }
  return draft;
}

void WatchedViews::Keep(Draft draft) noexcept {
  for (const auto& [last, hash] : draft.hashes) *last = hash;
  published_ = std::move(draft.basis);
  if (!std::exchange(hasUnsure_, false)) return;
  for (auto& [lootId, watched] : watched_) watched.isUnsure = false;
}

}  // namespace Kest::Client::Loot
