#include "loot/calls/loot_publisher.h"

#include <utility>

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/calls/watched_views.h"
#include "plugin/app_module.h"
#include "plugin/boundary.h"

namespace Kest::Client::Loot {
namespace {

// Ids may be longer than a formatted message, so paths are joined, not formatted.
constexpr const char* kItemPath = "/tav-loot/v1/player-loot/";
constexpr const char* kItemsPath = "/tav-loot/v1/player-loot-map";
constexpr const char* kVersionedItemsPath = "/tav-loot/v2/player-loot-map";
constexpr const char* kCategoriesPath = "/tav-loot/v1/player-display-categories";
constexpr const char* kTaskName = "LootPlugin.NotifyAllLootResourceUpdated ";
constexpr int kMostFailuresInARow = 8;

}  // namespace

void LootPublisher::Request() {
  module_.PostTask(kTaskName + std::to_string(publications_), [this] { Publish(); });
}

void LootPublisher::Publish() {
  isDueAgain_ = true;
  if (isPublishing_) return;
  isPublishing_ = true;
  bool isFailed = false;
  RunAtBoundary(
      [this] {
        while (std::exchange(isDueAgain_, false)) PublishOnce();
      },
      [&isFailed](const char* text) noexcept {
        isFailed = true;
        LogException("Publication", text);
      });
  isPublishing_ = false;
  // What was not published stays due. The next publication does it; memory may suffice sooner.
  failuresInARow_ = isFailed ? failuresInARow_ + 1 : 0;
  if (isFailed && failuresInARow_ <= kMostFailuresInARow) {
    RunAndLog("Publication", [this] { Request(); });
  }
}

void LootPublisher::PublishOnce() {
  Steps steps;
  PlayerLootChanges changes = sources_.store.FindChanges();
  ChestNotices::Draft notices(sources_.notices);
  AddItems(changes, &notices, &steps);
  if (changes.Any()) AddMaps(&steps);
  std::vector<std::string> categories = sources_.definitions->displayCategories();
  if (categories != publishedCategories_) {
    steps.push_back({client_.MakeChange(kCategoriesPath, ResourceEventType::kUpdate, categories)});
  }
  WatchedViews::Draft views = sources_.views.FindChanges(changes, &steps);

  // From here on nothing needs memory.
  sources_.store.MarkPublished(std::move(changes));
  sources_.notices.Keep(std::move(notices));
  sources_.views.Keep(std::move(views));
  publishedCategories_.swap(categories);
  for (const PublicationStep& step : steps) {
    if (!step.announcement.empty()) LogAlways("%s", step.announcement.c_str());
    client_.Publish(step.change);
  }
  ++publications_;
}

void LootPublisher::AddItems(const PlayerLootChanges& changes, ChestNotices::Draft* notices,
                             Steps* steps) const {
  for (const auto& [item, created] : changes.written) {
    const auto type = created ? ResourceEventType::kCreate : ResourceEventType::kUpdate;
    steps->push_back({client_.MakeChange(kItemPath + item->lootId, type, *item)});
    notices->Update(*item, steps);
  }
  for (const Api::PlayerLootPointer& item : changes.removed) {
    steps->push_back({{kItemPath + item->lootId, ResourceEventType::kDelete, {}}});
  }
}

void LootPublisher::AddMaps(Steps* steps) const {
  const auto store = sources_.store.Snapshot();
  steps->push_back({client_.MakeChange(kItemsPath, ResourceEventType::kUpdate, store->playerLoot)});
  // A PlayerLootMap is its version and the same text again.
  ResourceChange versioned = steps->back().change;
  versioned.path = kVersionedItemsPath;
  versioned.json.insert(0,
                        "{\"version\":" + std::to_string(store->version + 1) + ",\"playerLoot\":");
  versioned.json += '}';
  steps->push_back({std::move(versioned)});
}

}  // namespace Kest::Client::Loot
