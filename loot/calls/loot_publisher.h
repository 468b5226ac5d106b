// LootPublisher turns changes of the store and of the display categories into resource events.
// Threads: module tasks only; it does not wait.
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
  LootPublisher(AppModule& module, SiblingClient& client, const Sources& sources)
      : module_(module), client_(client), sources_(sources) {}

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
  void Publish();

  // The JSON of the maps as they are now; null when it has to be written. Valid until the next
  // publication, which a wait may bring.
  const MapText* PresentText() const;

 private:
  using Steps = std::vector<PublicationStep>;

  // All that is made before the first event leaves.
  struct Publication {
    explicit Publication(const ChestNotices& published) : notices(published) {}

    PlayerLootChanges changes;
    ItemTexts texts;                    // of the written items
    std::optional<MapText::Draft> map;  // nothing: it stays
    ChestNotices::Draft notices;
    Steps noticeSteps;
    std::vector<size_t> noticeItems;  // by step: the written item that it follows
    std::string path;                 // has the capacity for each item's
    std::vector<std::string> categories;
    WatchedViews::Draft views;
    Steps steps;  // after the maps
  };

  void PublishOnce();
  void Prepare(Publication* next);
  void Commit(Publication* next) noexcept;
  void Send(Publication& sent) noexcept;
  void SendStep(const PublicationStep& step) noexcept;

  AppModule& module_;
  SiblingClient& client_;
  const Sources sources_;
  MapText text_;
  std::vector<std::string> publishedCategories_;
  uint64_t publications_ = 0;
  bool isPublishing_ = false;
  bool isDueAgain_ = false;
  int failuresInARow_ = 0;
};

}  // namespace Kest::Client::Loot
