// WatchedViews returns recipe lists and context menus, and publishes each that changes after it was
// first read. Of a watched view only a hash is kept; what cannot have changed is not built again.
// At most 16,384 lists and as many menus are watched, and only of ids that have an item or a
// recipe; the others are only returned. Threads: module tasks only; it does not wait.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "loot/calls/forward.h"
#include "loot/calls/publication_step.h"
#include "loot/state/context_menus.h"
#include "loot/state/loot_switch.h"

namespace Kest::Client::Loot {

class WatchedViews {
  struct Watched {
    // Hashes of what was last published, or else first read; nothing: not watched.
    std::optional<uint64_t> recipes;
    std::optional<uint64_t> menu;
    bool isUnsure = false;  // read while the store had changes that were not published yet
  };
  // What every view depends on, beside the items.
  struct Basis {
    LootDefinitionsPointer definitions;
    uint64_t gameDataRevision = 0;
    bool isLootEnabled = false;

    friend bool operator==(const Basis&, const Basis&) = default;
  };

 public:
  // Borrows all, which outlive it.
  WatchedViews(SiblingClient& client, const LootState& state, const LootSwitch& loot)
      : client_(client),
        state_(state),
        loot_(loot),
        recipeViews_(state),
        menus_(loot, state.store, state.gameData, recipeViews_) {}

  // Each returns the view as it is now, and watches it.
  std::vector<Api::Recipe> ReadRecipes(const std::string& lootId);
  std::vector<Api::ContextMenu> ReadContextMenu(const std::string& lootId);

  // Whether a menu is watched, which loot being enabled or disabled changes.
  bool HasMenus() const { return menusWatched_ != 0; }

  // What a publication publishes of the views: Keep takes it over.
  class Draft {
    friend class WatchedViews;
    std::vector<std::pair<std::optional<uint64_t>*, uint64_t>> hashes;
    Basis basis;
  };
  // Appends an "Update" of each watched view that differs from what was last published, or else
  // first read: the recipe lists, then the menus.
  Draft FindChanges(const PlayerLootChanges& changes, std::vector<PublicationStep>* steps);
  void Keep(Draft draft) noexcept;

 private:
  class Touched;

  Basis CurrentBasis() const;
  // Null when the id is not to be watched.
  Watched* Watch(const std::string& lootId, bool hasRecipe);
  uint64_t HashOf(const std::vector<const IndexedRecipe*>& recipes);

  SiblingClient& client_;
  const LootState& state_;
  const LootSwitch& loot_;
  RecipeViews recipeViews_;
  ContextMenus menus_;
  std::map<std::string, Watched> watched_;  // by loot id; entries are never removed
  size_t recipesWatched_ = 0;
  size_t menusWatched_ = 0;
  bool hasUnsure_ = false;
  Basis published_;
  // Hashes of the recipes as they are shown, by place; 0: not needed yet. Of `hashed_`.
  std::vector<uint64_t> recipeHashes_;
  Basis hashed_;
};

}  // namespace Kest::Client::Loot
