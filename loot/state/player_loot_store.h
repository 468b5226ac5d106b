// PlayerLootStore keeps the player's items, and the items as they were last published. An item that
// is put in and equals its published copy is replaced by that copy: the two share their memory, and
// finding the changes compares pointers, of the ids touched since the last publication.
//
// Threads:  module tasks only.
// Lifetime: an item is immutable; a PlayerLootPointer outlives every later change. References to
//           the maps do not survive a wait.
#pragma once

#include <cstdint>
#include <functional>
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
  std::vector<Written> written;      // in the store's order
  std::vector<std::string> removed;  // ids, by rising id

  bool Any() const { return !written.empty() || !removed.empty(); }
};

class PlayerLootStore {
 public:
  PlayerLootStore();

  // The items and the version, which grows by one with each TakeChanges that found any.
  const Api::PlayerLootMap& map() const { return current_; }
  const Api::PlayerLootItems& items() const { return current_.playerLoot; }

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

  // Returns what differs from the last publication, marks it as published, and increments the
  // version if there is anything. Nothing is changed when memory runs out.
  PlayerLootChanges TakeChanges();

 private:
  using Ids = std::unordered_set<std::string>;

  // The pointer to store for `item`: its published copy when that is equal.
  Api::PlayerLootPointer Share(const Api::PlayerLoot& item) const;
  bool DiffersFromPublished(const std::string& lootId) const;
  // The touched items that differ, in the store's order.
  std::vector<PlayerLootChanges::Written> CollectWritten() const;

  Api::PlayerLootMap current_;
  Api::PlayerLootItems published_;
  Ids touched_;  // every id whose current and published pointers may differ
};

}  // namespace Kest::Client::Loot
