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

PlayerLootStore::PlayerLootStore() : current_(std::make_shared<Api::PlayerLootMap>()) {
  current_->playerLoot.max_load_factor(1.0F);
  current_->playerLoot.rehash(kInitialBuckets);
  published_.max_load_factor(1.0F);
  published_.rehash(kInitialBuckets);
}

Api::PlayerLootPointer PlayerLootStore::Find(const std::string& lootId) const {
  return FindIn(items(), lootId);
}

Api::PlayerLootMap& PlayerLootStore::Edit() {
  if (current_.use_count() > 1) current_ = std::make_shared<Api::PlayerLootMap>(*current_);
  return *current_;
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
  Edit().playerLoot.swap(replacement);
  touched_.swap(touched);
}

void PlayerLootStore::Put(const Api::PlayerLoot& item) {
  Api::PlayerLootPointer shared = Share(item);
  touched_.insert(item.lootId);
  Edit().playerLoot[item.lootId] = std::move(shared);
}

void PlayerLootStore::Remove(const std::string& lootId) {
  if (!items().contains(lootId)) return;
  touched_.insert(lootId);
  Edit().playerLoot.erase(lootId);
}

void PlayerLootStore::EditAll(const std::function<void(Api::PlayerLoot& item)>& edit) {
  Api::PlayerLoot scratch;  // reused: assigning to it keeps the capacity of its strings
  for (auto& [lootId, item] : Edit().playerLoot) {
    scratch = *item;
    edit(scratch);
    if (scratch == *item) continue;
    touched_.insert(lootId);
    item = Share(scratch);
  }
}

bool PlayerLootStore::DiffersFromPublished(const std::string& lootId) const {
  return FindIn(items(), lootId) != FindIn(published_, lootId);
}

std::vector<PlayerLootChanges::Written> PlayerLootStore::CollectWritten() const {
  std::vector<PlayerLootChanges::Written> written;
  const auto add = [&](const std::string& lootId, const Api::PlayerLootPointer& item) {
    if (DiffersFromPublished(lootId)) written.push_back({item, !published_.contains(lootId)});
  };
  if (touched_.size() == 1) {  // the usual case needs no walk to find the order
    const auto found = items().find(*touched_.begin());
    if (found != items().end()) add(found->first, found->second);
    return written;
  }
  if (touched_.empty()) return written;
  for (const auto& [lootId, item] : items()) {
    if (touched_.contains(lootId)) add(lootId, item);
  }
  return written;
}

PlayerLootChanges PlayerLootStore::FindChanges() {
  PlayerLootChanges changes{CollectWritten(), {}, {}};
  for (const std::string& lootId : touched_) {
    const Api::PlayerLootPointer published = FindIn(published_, lootId);
    if (published != nullptr && !items().contains(lootId)) changes.removed.push_back(published);
  }
  std::sort(changes.removed.begin(), changes.removed.end(),
            [](const auto& left, const auto& right) { return left->lootId < right->lootId; });
  for (const auto& [item, isCreated] : changes.written) {
    if (isCreated) changes.created.emplace(item->lootId, item);
  }
  published_.reserve(published_.size() + changes.created.size());
  Edit();
  return changes;
}

void PlayerLootStore::MarkPublished(PlayerLootChanges* changes) noexcept {
  for (const auto& [item, isCreated] : changes->written) {
    if (!isCreated) published_.find(item->lootId)->second = item;
  }
  published_.merge(changes->created);
  for (const Api::PlayerLootPointer& item : changes->removed) published_.erase(item->lootId);
  if (changes->Any()) ++current_->version;
  Ids().swap(touched_);
}

}  // namespace Kest::Client::Loot
