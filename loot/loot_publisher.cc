#include "loot/loot_publisher.h"

#include "loot/calls/sibling_client.h"
#include "loot/model/loot_definitions.h"
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

LootPublisher::LootPublisher(AppModule& module, SiblingClient& client, PlayerLootStore& store,
                             const LootDefinitions& definitions)
    : module_(module), client_(client), store_(store), definitions_(definitions) {}

void LootPublisher::Request() {
  module_.PostTask(kTaskName + std::to_string(publications_), [this] { Publish(); });
}

void LootPublisher::Publish() {
  const PlayerLootChanges changes = store_.TakeChanges();
  const bool categoriesDiffer = definitions_.displayCategories() != publishedCategories_;
  if (categoriesDiffer) publishedCategories_ = definitions_.displayCategories();
  PublishItems(changes);
  if (changes.Any()) {
    client_.Publish(kItemsPath, ResourceEventType::kUpdate, store_.items());
    client_.Publish(kVersionedItemsPath, ResourceEventType::kUpdate, store_.map());
  }
  if (categoriesDiffer) {
    client_.Publish(kCategoriesPath, ResourceEventType::kUpdate, publishedCategories_);
  }
  ++publications_;
}

void LootPublisher::PublishItems(const PlayerLootChanges& changes) {
  for (const auto& [item, created] : changes.written) {
    client_.Publish(kItemPath + item->lootId,
                    created ? ResourceEventType::kCreate : ResourceEventType::kUpdate, *item);
  }
  for (const std::string& lootId : changes.removed) client_.PublishDelete(kItemPath + lootId);
}

}  // namespace Kest::Client::Loot
