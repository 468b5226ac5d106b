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

#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

// What a publication has to publish.
struct PlayerLootChanges {
  struct Written {
    Api::PlayerLootPointer item;
    bool created = false;  // not in the last publication
  };
  std::vector<Written> written;                 // in the store's order
  std::vector<Api::PlayerLootPointer> removed;  // as last published, by rising id
  Api::PlayerLootItems created;                 // those of `written`, which MarkPublished takes

  bool Any() const { return !written.empty() || !removed.empty(); }
};

class PlayerLootStore {
 public:
  PlayerLootStore();

  // The items and the version, which grows by one with each publication of a change.
  std::shared_ptr<const Api::PlayerLootMap> Snapshot() const { return current_; }

  // Null for an unknown id.
  Api::PlayerLootPointer Find(const std::string& lootId) const;

  // Replaces all items; of two with one id the later stays. The store is unchanged when memory runs
  // out.
  void Replace(const std::vector<Api::PlayerLoot>& items);

  // Inserts an item under its `lootId`, or replaces the one that is there.
  void Put(const Api::PlayerLoot& item);

  // An unknown id does nothing.
  void Remove(const std::string& lootId);

  // Applies `edit` to every item; items it leaves equal stay untouched. `edit` must leave `lootId`
  // alone and must not use the store.
  void EditAll(const std::function<void(Api::PlayerLoot& item)>& edit);

  // What differs from the last publication. Reserves the space that MarkPublished needs.
  PlayerLootChanges FindChanges();
  // Whether FindChanges may find something.
  bool HasChanges() const { return !touched_.empty(); }
  // Marks them as published, and increments the version if there are any. REQUIRES: they were
  // found last, and the store has not changed since.
  void MarkPublished(PlayerLootChanges* changes) noexcept;

 private:
  const Api::PlayerLootItems& items() const { return current_->playerLoot; }

  using Ids = std::unordered_set<std::string>;

  // The pointer to store for `item`: its published copy when that is equal.
  Api::PlayerLootPointer Share(const Api::PlayerLoot& item) const;
  bool DiffersFromPublished(const std::string& lootId) const;
  // The touched items that differ, in the store's order.
  std::vector<PlayerLootChanges::Written> CollectWritten() const;

  // The map to change: its own copy while a snapshot is held.
  Api::PlayerLootMap& Edit();

  std::shared_ptr<Api::PlayerLootMap> current_;
  Api::PlayerLootItems published_;
  Ids touched_;  // every id whose current and published pointers may differ
};

}  // namespace Kest::Client::Loot
