// ChestNotices counts the new-player chests and remembers whether the player has acknowledged the
// count. A notification is never removed, only acknowledged; it counts as new again when the count
// grows. Every change is published. Threads: module tasks only; it does not wait.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/stable_hash.h"
#include "loot/calls/forward.h"
#include "loot/calls/publication_step.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

class ChestNotices {
  using Notifications =  // by id
      std::unordered_map<std::string, Api::PlayerLootNotification, StableHash>;

 public:
  // Borrows the client, which outlives it.
  explicit ChestNotices(SiblingClient& client) : client_(client) {}

  // The notifications as a publication will leave them; `Keep` takes them over.
  class Draft {
   public:
    explicit Draft(const ChestNotices& notices)
        : client_(notices.client_), notifications_(notices.notifications_) {}

    // Records an item's count; a falling one, or a first count of 0, is ignored. Appends the change
    // to be published, if any, with its log line.
    void Update(const Api::PlayerLoot& item, std::vector<PublicationStep>* steps);

   private:
    friend class ChestNotices;
    SiblingClient& client_;
    Notifications notifications_;
  };
  void Keep(Draft draft) noexcept { notifications_.swap(draft.notifications_); }

  // Returns "ACKNOWLEDGED", or "NOT_FOUND" for an id without a notification.
  std::string Acknowledge(const std::string& id);

  std::vector<Api::PlayerLootNotification> List() const;

  // How often one was acknowledged: what was made to be published before then is out of date.
  uint64_t Acknowledgements() const { return acknowledgements_; }

 private:
  SiblingClient& client_;
  Notifications notifications_{8};
  uint64_t acknowledgements_ = 0;
};

}  // namespace Kest::Client::Loot
