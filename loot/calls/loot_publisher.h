// LootPublisher turns changes of the store and of the display categories into resource events.
// Threads: module tasks only; publishing many items waits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "loot/calls/chest_notices.h"
#include "loot/calls/forward.h"
#include "loot/calls/publication_step.h"
#include "loot/calls/watched_views.h"
#include "loot/model/loot_definitions.h"
#include "loot/state/map_text.h"
#include "loot/state/player_loot_store.h"

namespace Kest::Client::Loot {

class LootPublisher {
 public:
  // What a publication reads and updates; all outlive it.
  struct Sources {
    PlayerLootStore& store;
    const LootDefinitionsPointer& definitions;
    ChestNotices& notices;
    WatchedViews& views;
  };
  // Up to `itemsInSlice` changed items are published without a pause.
  LootPublisher(AppModule& module, SiblingClient& client, const Sources& sources,
                size_t itemsInSlice = kItemsInSlice)
      : module_(module), client_(client), sources_(sources), itemsInSlice_(itemsInSlice) {}

  // Posts the task "LootPlugin.NotifyAllLootResourceUpdated <count of publications>", which
  // publishes. Requests made before it runs may share one task.
  void Request();

  // Publishes what differs from the last publication, in this order: each written item in the
  // store's order ("Create" for a new one, "Update" otherwise; the list of notifications after an
  // item that changes it), each removed one ("Delete"), the two maps if there was any, the display
  // categories if they differ, and the watched views that changed. All is made before the first
  // event leaves: when memory runs out nothing is published, and the next publication does it. The
  // host may ask the plugin something from inside an event; a publication that this brings about
  // follows when this one is complete.
  //
  // When more than a few hundred items may have changed, other tasks run every few hundred items:
  // while texts are made, before anything has changed, and between events. What changes meanwhile
  // is in this publication if its first event has not left, else in one that follows it. Stop ends
  // it in a pause.
  void Publish();

  // The JSON of the maps as they are now; null when it has to be written. Valid until the next
  // publication, which a wait may bring.
  const MapText* PresentText() const;

 private:
  using Steps = std::vector<PublicationStep>;

  // All that is made before the first event leaves.
  struct Publication {
    bool isLarge = false;  // it is made and sent with pauses
    PlayerLootChanges changes;
    ItemTexts texts;                    // of the written items
    std::optional<MapText::Draft> map;  // nothing: it stays
    std::optional<ChestNotices::Draft> notices;
    Steps noticeSteps;
    std::vector<size_t> noticeItems;  // by step: the written item that it follows
    std::string path;                 // has the capacity for each item's
    std::vector<std::string> categories;
    WatchedViews::Draft views;
    Steps steps;  // after the maps
  };

  // Those that return false have been given up in a pause, most because the plugin stops.
  bool PublishOnce();
  bool PrepareItems(Publication* next);
  bool TryPrepareItems(Pace& pace, Publication* next);
  void PrepareRest(Publication* next);
  void Commit(Publication* next) noexcept;
  bool Send(Publication* sent) noexcept;
  bool SendItems(Pace& pace, Publication* sent) noexcept;
  bool SendMaps(Pace& pace) noexcept;
  void SendStep(const PublicationStep& step) noexcept;

  AppModule& module_;
  SiblingClient& client_;
  const Sources sources_;
  const size_t itemsInSlice_;
  MapText text_;
  std::vector<std::string> publishedCategories_;
  uint64_t publications_ = 0;
  bool isPublishing_ = false;
  bool isDueAgain_ = false;
  int failuresInARow_ = 0;
};

}  // namespace Kest::Client::Loot
