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

Api::PlayerLootPointer ShareWith(const Api::PlayerLootPointer& published,
                                 const Api::PlayerLoot& item) {
  if (published != nullptr && *published == item) return published;
  return std::make_shared<const Api::PlayerLoot>(item);
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

void PlayerLootStore::Own() {
  if (current_.use_count() > 1) current_ = std::make_shared<Api::PlayerLootMap>(*current_);
}

Api::PlayerLootMap& PlayerLootStore::Edit() {
  ++revision_;
  Own();
  return *current_;
}

Api::PlayerLootPointer PlayerLootStore::Share(const Api::PlayerLoot& item) const {
  return ShareWith(FindIn(published_, item.lootId), item);
}

void PlayerLootStore::AddTo(Replacement* replacement, const Api::PlayerLoot& item) const {
  const Api::PlayerLootPointer published = FindIn(published_, item.lootId);
  const bool isFirst = replacement->touched.insert(item.lootId).second;
  if (isFirst && published != nullptr) ++replacement->published;
  replacement->items[item.lootId] = ShareWith(published, item);
}

void PlayerLootStore::Replace(Replacement* replacement) {
  if (replacement->published != published_.size()) {
    for (const auto& [lootId, item] : published_) {
      if (!replacement->items.contains(lootId)) replacement->touched.insert(lootId);
    }
  }
  if (current_.use_count() > 1) {
    const int64_t version = current_->version;
    current_ = std::make_shared<Api::PlayerLootMap>();
    current_->version = version;
  }
  current_->playerLoot.swap(replacement->items);
  touched_.swap(replacement->touched);
  ++revision_;
}

bool PlayerLootStore::FreeSome(Replacement* replaced, size_t most) noexcept {
  for (; most > 0 && !replaced->items.empty(); --most) {
    replaced->items.erase(replaced->items.begin());
  }
  for (; most > 0 && !replaced->touched.empty(); --most) {
    replaced->touched.erase(replaced->touched.begin());
  }
  return replaced->items.empty() && replaced->touched.empty();
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

void PlayerLootStore::CollectWritten(const std::string& lootId, const Api::PlayerLootPointer& item,
                                     PlayerLootChanges* changes) {
  const auto place = published_.try_emplace(lootId).first;
  Api::PlayerLootPointer& published = place->second;
  if (published == item) return;
  changes->written.push_back({item, published == nullptr, &published});
}

bool PlayerLootStore::CollectRemoved(Pace& pace, PlayerLootChanges* changes) {
  for (const std::string& lootId : touched_) {
    if (!pace.Step()) return false;
    const auto place = published_.find(lootId);
    if (place == published_.end() || items().contains(lootId)) continue;
    if (place->second != nullptr) {
      changes->removed.push_back(place->second);
    } else {
      published_.erase(place);  // a publication that failed has left it
    }
  }
  std::sort(changes->removed.begin(), changes->removed.end(),
            [](const auto& left, const auto& right) { return left->lootId < right->lootId; });
  return true;
}

bool PlayerLootStore::FindChanges(Pace& pace, PlayerLootChanges* changes) {
  *changes = {};
  if (touched_.size() == 1) {  // the usual case needs no walk to find the order
    const auto found = items().find(*touched_.begin());
    if (found != items().end()) CollectWritten(found->first, found->second, changes);
  } else if (!touched_.empty()) {
    for (const auto& [lootId, item] : items()) {
      if (touched_.contains(lootId)) CollectWritten(lootId, item, changes);
      if (!pace.Step()) return false;
    }
  }
  return CollectRemoved(pace, changes);
}

void PlayerLootStore::MarkPublished(PlayerLootChanges* changes) noexcept {
  for (PlayerLootChanges::Written& written : changes->written) {
    written.replaced = std::exchange(*written.published, written.item);
  }
  for (const Api::PlayerLootPointer& item : changes->removed) published_.erase(item->lootId);
  if (changes->Any()) ++current_->version;
  marked_.swap(touched_);
  Ids().swap(touched_);
}

bool PlayerLootStore::FreeMarked(Pace& pace, PlayerLootChanges* changes) noexcept {
  while (!changes->written.empty()) {
    changes->written.pop_back();
    if (!pace.Step()) return false;
  }
  while (!marked_.empty()) {
    marked_.erase(marked_.begin());
    if (!pace.Step()) return false;
  }
  return true;
}

}  // namespace Kest::Client::Loot
