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
constexpr const char* kPauseName = "LootPlugin.PublicationPause";
constexpr int kMostFailuresInARow = 8;
// A publication that is overtaken by changes this often is made without pauses.
constexpr int kMostInterruptedRounds = 3;

// Replaces the path in `*path`, whose capacity suffices, by that of an item.
std::string_view ItemPath(const Api::PlayerLoot& item, std::string* path) noexcept {
  return path->assign(kItemPath).append(item.lootId);
}

// An empty string that can hold the path of each changed item.
std::string ItemPathSpace(const PlayerLootChanges& changes) {
  size_t longest = 0;
  for (const auto& written : changes.written) {
    longest = std::max(longest, written.item->lootId.size());
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
        while (std::exchange(isDueAgain_, false) && PublishOnce()) continue;
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

bool LootPublisher::PublishOnce() {
  Publication next;
  if (!PrepareItems(&next)) return false;
  PrepareRest(&next);
  Commit(&next);
  return Send(&next);
}

bool LootPublisher::PrepareItems(Publication* next) {
  next->isLarge = sources_.store.TouchedItems() > itemsInSlice_;
  for (int round = 0; next->isLarge && round < kMostInterruptedRounds; ++round) {
    const uint64_t revision = sources_.store.Revision();
    bool goesOn = true;
    Pace pace(itemsInSlice_, [&] {
      goesOn = module_.LetOthersRun(kPauseName);
      return goesOn && sources_.store.Revision() == revision;
    });
    if (TryPrepareItems(pace, next)) return true;
    if (!goesOn) return false;
  }
  Pace pace;
  return TryPrepareItems(pace, next);
}

bool LootPublisher::TryPrepareItems(Pace& pace, Publication* next) {
  if (!sources_.store.FindChanges(pace, &next->changes)) return false;
  next->texts.Rewind();
  for (const PlayerLootChanges::Written& written : next->changes.written) {
    if (next->texts.HasNext(*written.item)) continue;
    next->texts.Add(written.item);
    if (!pace.Step()) return false;
  }
  if (!sources_.store.HasChanges()) return true;
  // Perhaps of the order alone.
  return text_.Prepare(pace, sources_.store.items(), next->texts, &next->map.emplace());
}

void LootPublisher::PrepareRest(Publication* next) {
  const std::vector<PlayerLootChanges::Written>& written = next->changes.written;
  next->notices.emplace(sources_.notices);
  for (size_t i = 0; i < written.size(); ++i) {
    next->notices->Update(*written[i].item, &next->noticeSteps);
    next->noticeItems.resize(next->noticeSteps.size(), i);
  }
  next->path = ItemPathSpace(next->changes);
  next->categories = sources_.definitions->displayCategories();
  if (next->categories != publishedCategories_) {
    next->steps.push_back(
        {client_.MakeChange(kCategoriesPath, ResourceEventType::kUpdate, next->categories)});
  }
  next->views = sources_.views.FindChanges(next->changes, &next->steps);
  sources_.store.PrepareToMark();
}

void LootPublisher::Commit(Publication* next) noexcept {
  sources_.store.MarkPublished(&next->changes);
  if (next->map) text_.Keep(std::move(*next->map), sources_.store.Snapshot()->version);
  sources_.notices.Keep(std::move(*next->notices));
  sources_.views.Keep(std::move(next->views));
  publishedCategories_.swap(next->categories);
}

bool LootPublisher::Send(Publication* sent) noexcept {
  Pace pace;
  if (sent->isLarge) pace = {itemsInSlice_, [this] { return module_.LetOthersRun(kPauseName); }};
  if (!SendItems(pace, sent)) return false;
  sent->texts = ItemTexts();
  if (sent->changes.Any() && !SendMaps(pace)) return false;
  for (const PublicationStep& step : sent->steps) SendStep(step);
  ++publications_;
  return sources_.store.FreeMarked(pace, &sent->changes);
}

bool LootPublisher::SendItems(Pace& pace, Publication* sent) noexcept {
  size_t place = 0;
  size_t notice = 0;
  const uint64_t acknowledgements = sources_.notices.Acknowledgements();
  const std::vector<PlayerLootChanges::Written>& written = sent->changes.written;
  for (size_t i = 0; i < written.size(); ++i) {
    const Api::PlayerLoot& item = *written[i].item;
    const auto type =
        written[i].isCreated ? ResourceEventType::kCreate : ResourceEventType::kUpdate;
    client_.PublishJson<Api::PlayerLoot>(ItemPath(item, &sent->path), type,
                                         text_.Item(item, &place));
    for (; notice < sent->noticeItems.size() && sent->noticeItems[notice] == i; ++notice) {
      // Acknowledging in a pause has published the whole list, as it now is.
      if (sources_.notices.Acknowledgements() != acknowledgements) break;
      SendStep(sent->noticeSteps[notice]);
    }
    if (!pace.Step()) return false;
  }
  for (const Api::PlayerLootPointer& item : sent->changes.removed) {
    client_.PublishDelete(ItemPath(*item, &sent->path));
    if (!pace.Step()) return false;
  }
  return true;
}

bool LootPublisher::SendMaps(Pace& pace) noexcept {
  if (!pace.Step(itemsInSlice_)) return false;
  client_.PublishJson<Api::PlayerLootItems>(kItemsPath, ResourceEventType::kUpdate, text_.Items());
  if (!pace.Step(itemsInSlice_)) return false;
  client_.PublishJson<Api::PlayerLootMap>(kVersionedItemsPath, ResourceEventType::kUpdate,
                                          text_.Versioned());
  return pace.Step(itemsInSlice_);
}

void LootPublisher::SendStep(const PublicationStep& step) noexcept {
  if (!step.announcement.empty()) LogAlways("%s", step.announcement.c_str());
  client_.Publish(step.change);
}

const MapText* LootPublisher::PresentText() const {
  return sources_.store.HasChanges() || text_.Items().empty() ? nullptr : &text_;
}

}  // namespace Kest::Client::Loot
