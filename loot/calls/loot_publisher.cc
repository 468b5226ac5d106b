#include "loot/calls/loot_publisher.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "client/sibling_client.h"
#include "log/logger.h"
#include "plugin/app_module.h"
#include "plugin/boundary.h"

namespace Kest::Client::Loot {
namespace {

// Ids may be longer than a formatted message, so paths are joined, not formatted.
constexpr std::string_view kItemPath = "/tav-loot/v1/player-loot/";
constexpr const char* kItemsPath = "/tav-loot/v1/player-loot-map";
constexpr const char* kVersionedItemsPath = "/tav-loot/v2/player-loot-map";
constexpr const char* kCategoriesPath = "/tav-loot/v1/player-display-categories";
constexpr const char* kTaskName = "LootPlugin.NotifyAllLootResourceUpdated ";
constexpr int kMostFailuresInARow = 8;

// Replaces the path in `*path`, whose capacity suffices, by that of an item.
std::string_view ItemPath(const Api::PlayerLoot& item, std::string* path) noexcept {
  return path->assign(kItemPath).append(item.lootId);
}

// An empty string that can hold the path of each changed item.
std::string ItemPathSpace(const PlayerLootChanges& changes) {
  size_t longest = 0;
  for (const auto& [item, isCreated] : changes.written) {
    longest = std::max(longest, item->lootId.size());
  }
  for (const auto& item : changes.removed) longest = std::max(longest, item->lootId.size());
  std::string path;
  path.reserve(kItemPath.size() + longest);
  return path;
}

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
  Publication next(sources_.notices);
  Prepare(&next);
  Commit(&next);
  Send(next);
}

void LootPublisher::Prepare(Publication* next) {
  next->changes = sources_.store.FindChanges();
  const std::vector<PlayerLootChanges::Written>& written = next->changes.written;
  std::vector<Api::PlayerLootPointer> items;
  for (const auto& [item, isCreated] : written) items.push_back(item);
  next->texts.Add(items);
  if (sources_.store.HasChanges()) {  // perhaps of the order alone
    next->map = text_.Prepare(sources_.store.Snapshot()->playerLoot, next->texts);
  }
  for (size_t i = 0; i < written.size(); ++i) {
    next->notices.Update(*written[i].item, &next->noticeSteps);
    next->noticeItems.resize(next->noticeSteps.size(), i);
  }
  next->path = ItemPathSpace(next->changes);
  next->categories = sources_.definitions->displayCategories();
  if (next->categories != publishedCategories_) {
    next->steps.push_back(
        {client_.MakeChange(kCategoriesPath, ResourceEventType::kUpdate, next->categories)});
  }
  next->views = sources_.views.FindChanges(next->changes, &next->steps);
}

void LootPublisher::Commit(Publication* next) noexcept {
  sources_.store.MarkPublished(&next->changes);
  if (next->map) text_.Keep(std::move(*next->map), sources_.store.Snapshot()->version);
  sources_.notices.Keep(std::move(next->notices));
  sources_.views.Keep(std::move(next->views));
  publishedCategories_.swap(next->categories);
}

void LootPublisher::Send(Publication& sent) noexcept {
  size_t place = 0;
  size_t notice = 0;
  const std::vector<PlayerLootChanges::Written>& written = sent.changes.written;
  for (size_t i = 0; i < written.size(); ++i) {
    const auto& [item, isCreated] = written[i];
    const auto type = isCreated ? ResourceEventType::kCreate : ResourceEventType::kUpdate;
    client_.PublishJson<Api::PlayerLoot>(ItemPath(*item, &sent.path), type,
                                         text_.Item(*item, &place));
    for (; notice < sent.noticeItems.size() && sent.noticeItems[notice] == i; ++notice) {
      SendStep(sent.noticeSteps[notice]);
    }
  }
  for (const Api::PlayerLootPointer& item : sent.changes.removed) {
    client_.PublishDelete(ItemPath(*item, &sent.path));
  }
  if (sent.changes.Any()) {
    client_.PublishJson<Api::PlayerLootItems>(kItemsPath, ResourceEventType::kUpdate,
                                              text_.Items());
    client_.PublishJson<Api::PlayerLootMap>(kVersionedItemsPath, ResourceEventType::kUpdate,
                                            text_.Versioned());
  }
  for (const PublicationStep& step : sent.steps) SendStep(step);
  ++publications_;
}

void LootPublisher::SendStep(const PublicationStep& step) noexcept {
  if (!step.announcement.empty()) LogAlways("%s", step.announcement.c_str());
  client_.Publish(step.change);
}

const MapText* LootPublisher::PresentText() const {
  return sources_.store.HasChanges() || text_.Items().empty() ? nullptr : &text_;
}

}  // namespace Kest::Client::Loot
