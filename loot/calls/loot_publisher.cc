#include "loot/calls/loot_publisher.h"

#include "client/sibling_client.h"
#include "loot/calls/chest_notices.h"
#include "loot/calls/watched_views.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

// Ids may be longer than a formatted message, so paths are joined, not formatted.
constexpr const char* kItemPath = "/tav-loot/v1/player-loot/";
constexpr const char* kItemsPath = "/tav-loot/v1/player-loot-map";
constexpr const char* kVersionedItemsPath = "/tav-loot/v2/player-loot-map";
constexpr const char* kCategoriesPath = "/tav-loot/v1/player-display-categories";
constexpr const char* kTaskName = "LootPlugin.NotifyAllLootResourceUpdated ";

}  // namespace

void LootPublisher::Request() {
  module_.PostTask(kTaskName + std::to_string(publications_), [this] { Publish(); });
}

void LootPublisher::Publish() {
  const PlayerLootChanges changes = sources_.store.TakeChanges();
  const std::vector<std::string>& categories = sources_.definitions.displayCategories();
  const bool categoriesDiffer = categories != publishedCategories_;
  if (categoriesDiffer) publishedCategories_ = categories;
  PublishItems(changes);
  if (changes.Any()) PublishMaps();
  if (categoriesDiffer) {
    client_.Publish(kCategoriesPath, ResourceEventType::kUpdate, publishedCategories_);
  }
  sources_.views.PublishChanges();
  ++publications_;
}

void LootPublisher::PublishItems(const PlayerLootChanges& changes) {
  for (const auto& [item, created] : changes.written) {
    client_.Publish(kItemPath + item->lootId,
                    created ? ResourceEventType::kCreate : ResourceEventType::kUpdate, *item);
    sources_.notices.Update(*item);
  }
  for (const std::string& lootId : changes.removed) client_.PublishDelete(kItemPath + lootId);
}

void LootPublisher::PublishMaps() {
  client_.Publish(kItemsPath, ResourceEventType::kUpdate, sources_.store.items());
  client_.Publish(kVersionedItemsPath, ResourceEventType::kUpdate, sources_.store.map());
}

}  // namespace Kest::Client::Loot
