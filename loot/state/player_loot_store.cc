#include "loot/state/player_loot_store.h"

#include <algorithm>
#include <utility>

namespace Kest::Client::Loot {
namespace {

constexpr size_t kInitialBuckets = 8;

Api::PlayerLootPointer FindIn(const Api::PlayerLootItems& items, const std::string& lootId) {
  const auto found = items.find(lootId);
  return found == items.end() ? nullptr : found->second;
}

}  // namespace

PlayerLootStore::PlayerLootStore() {
  current_.playerLoot.max_load_factor(1.0F);
  current_.playerLoot.rehash(kInitialBuckets);
  published_.max_load_factor(1.0F);
  published_.rehash(kInitialBuckets);
}

Api::PlayerLootPointer PlayerLootStore::Find(const std::string& lootId) const {
  return FindIn(current_.playerLoot, lootId);
}

Api::PlayerLootPointer PlayerLootStore::Share(const Api::PlayerLoot& item) const {
  Api::PlayerLootPointer published = FindIn(published_, item.lootId);
  if (published != nullptr && *published == item) return published;
  return std::make_shared<const Api::PlayerLoot>(item);
}

void PlayerLootStore::Replace(const std::vector<Api::PlayerLoot>& items) {
  Api::PlayerLootItems replacement(kInitialBuckets);
  Ids touched;
  for (const auto& [lootId, item] : published_) touched.insert(lootId);
  for (const Api::PlayerLoot& item : items) {
    touched.insert(item.lootId);
    replacement[item.lootId] = Share(item);
  }
  current_.playerLoot.swap(replacement);
  touched_.swap(touched);
}

void PlayerLootStore::Put(const Api::PlayerLoot& item) {
  Api::PlayerLootPointer shared = Share(item);
  touched_.insert(item.lootId);
  current_.playerLoot[item.lootId] = std::move(shared);
}

void PlayerLootStore::Remove(const std::string& lootId) {
  const auto found = current_.playerLoot.find(lootId);
  if (found == current_.playerLoot.end()) return;
  touched_.insert(lootId);
  current_.playerLoot.erase(found);
}

void PlayerLootStore::EditAll(const std::function<void(Api::PlayerLoot& item)>& edit) {
  Api::PlayerLoot scratch;  // reused: assigning to it keeps the capacity of its strings
  for (auto& [lootId, item] : current_.playerLoot) {
    scratch = *item;
    edit(scratch);
    if (scratch == *item) continue;
    touched_.insert(lootId);
    item = Share(scratch);
  }
}

bool PlayerLootStore::DiffersFromPublished(const std::string& lootId) const {
  return FindIn(current_.playerLoot, lootId) != FindIn(published_, lootId);
}

std::vector<PlayerLootChanges::Written> PlayerLootStore::CollectWritten() const {
  std::vector<PlayerLootChanges::Written> written;
  const auto add = [&](const std::string& lootId, const Api::PlayerLootPointer& item) {
    if (DiffersFromPublished(lootId)) written.push_back({item, !published_.contains(lootId)});
  };
  if (touched_.size() == 1) {  // the usual case needs no walk to find the order
    const auto found = current_.playerLoot.find(*touched_.begin());
    if (found != current_.playerLoot.end()) add(found->first, found->second);
    return written;
  }
  if (touched_.empty()) return written;
  for (const auto& [lootId, item] : current_.playerLoot) {
    if (touched_.contains(lootId)) add(lootId, item);
  }
  return written;
}

PlayerLootChanges PlayerLootStore::TakeChanges() {
  PlayerLootChanges changes{CollectWritten(), {}};
  for (const std::string& lootId : touched_) {
    if (published_.contains(lootId) && !current_.playerLoot.contains(lootId)) {
      changes.removed.push_back(lootId);
    }
  }
  std::sort(changes.removed.begin(), changes.removed.end());
  Api::PlayerLootItems created;
  for (const auto& [item, isCreated] : changes.written) {
    if (isCreated) created.emplace(item->lootId, item);
  }
  published_.reserve(published_.size() + created.size());

  // From here on nothing allocates.
  for (const auto& [item, isCreated] : changes.written) {
    if (!isCreated) published_.find(item->lootId)->second = item;
  }
  published_.merge(created);
  for (const std::string& lootId : changes.removed) published_.erase(lootId);
  if (changes.Any()) ++current_.version;
  Ids().swap(touched_);
  return changes;
}

}  // namespace Kest::Client::Loot
