// PlayerLootStore keeps the player's items, and the items as they were last published. An item that
// is put in and equals its published copy is replaced by that copy: the two share their memory, and
// finding the changes compares pointers, of the ids touched since the last publication.
//
// Threads:  module tasks only.
// Lifetime: an item and a snapshot are immutable and may be kept as long as one likes, also while
//           other tasks run. A change copies the map only while somebody holds a snapshot of it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "loot/state/pace.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

// What a publication has to publish.
struct PlayerLootChanges {
  struct Written {
    Api::PlayerLootPointer item;
    bool isCreated = false;                       // not in the last publication
    Api::PlayerLootPointer* published = nullptr;  // the store's place for it
    Api::PlayerLootPointer replaced{};            // what was there, until it is freed
  };
  std::vector<Written> written;                 // in the store's order
  std::vector<Api::PlayerLootPointer> removed;  // as last published, by rising id

  bool Any() const { return !written.empty() || !removed.empty(); }
};

class PlayerLootStore {
  using Ids = std::unordered_set<std::string>;

 public:
  PlayerLootStore();

  // The items and the version, which grows by one with each publication of a change.
  std::shared_ptr<const Api::PlayerLootMap> Snapshot() const { return current_; }
  int64_t version() const { return current_->version; }

  // The same items, until the next change.
  const Api::PlayerLootItems& items() const { return current_->playerLoot; }

  // Null for an unknown id.
  Api::PlayerLootPointer Find(const std::string& lootId) const;

  // All items in the making.
  class Replacement {
    friend class PlayerLootStore;
    Api::PlayerLootItems items;
    Ids touched;
    size_t published = 0;  // of these
  };
  // Of two items with one id the later stays.
  void AddTo(Replacement* replacement, const Api::PlayerLoot& item) const;
  // Replaces all items; `*replacement` then holds what has to be freed of the old ones. The store
  // is unchanged when memory runs out. REQUIRES: the version is the same as when the first of them
  // was added.
  void Replace(Replacement* replacement);
  // Frees up to `most` of them. True: none is left.
  static bool FreeSome(Replacement* replaced, size_t most) noexcept;

  // Inserts an item under its `lootId`, or replaces the one that is there.
  void Put(const Api::PlayerLoot& item);

  // An unknown id does nothing.
  void Remove(const std::string& lootId);

  // Applies `edit` to every item; items it leaves equal stay untouched. `edit` must leave `lootId`
  // alone and must not use the store.
  void EditAll(const std::function<void(Api::PlayerLoot& item)>& edit);

  // Grows with each change of the store.
  uint64_t Revision() const { return revision_; }
  // How many items may differ from the last publication, and whether there are any.
  size_t TouchedItems() const { return touched_.size(); }
  bool HasChanges() const { return !touched_.empty(); }

  // What differs from the last publication. False: given up in a pause of `pace`, which must not go
  // on once the store has changed.
  bool FindChanges(Pace& pace, PlayerLootChanges* changes);
  // Makes what MarkPublished needs.
  void PrepareToMark() { Own(); }
  // Marks `*changes` as published, and increments the version if there are any. REQUIRES: they were
  // found last, and the store has not changed since, nor has other code run since PrepareToMark.
  void MarkPublished(PlayerLootChanges* changes) noexcept;
  // Frees what the last MarkPublished has left. False: given up in a pause.
  bool FreeMarked(Pace& pace, PlayerLootChanges* changes) noexcept;

 private:
  // The pointer to store for `item`: its published copy when that is equal.
  Api::PlayerLootPointer Share(const Api::PlayerLoot& item) const;
  // Adds a touched item if it differs from its published copy.
  void CollectWritten(const std::string& lootId, const Api::PlayerLootPointer& item,
                      PlayerLootChanges* changes);
  bool CollectRemoved(Pace& pace, PlayerLootChanges* changes);

  // Makes the map this store's own: a copy while a snapshot is held.
  void Own();
  // The map to change.
  Api::PlayerLootMap& Edit();

  std::shared_ptr<Api::PlayerLootMap> current_;
  Api::PlayerLootItems published_;  // null: a place for what is published next
  Ids touched_;                     // every id whose current and published pointers may differ
  Ids marked_;                      // of the last publication, to be freed
  uint64_t revision_ = 0;
};

}  // namespace Kest::Client::Loot
