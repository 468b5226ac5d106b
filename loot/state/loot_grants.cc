#include "loot/state/loot_grants.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "log/logger.h"

namespace Kest::Client::Loot {

bool LootGrants::Add(Api::LootGrantNotification grant) {
  grant.id = static_cast<int64_t>(nextId_++);
  (allowed_ ? shown_ : queued_).push_back(std::move(grant));
  return allowed_;
}

std::optional<Api::LootGrantNotification> LootGrants::Remove(int64_t id) {
  const auto found =
      std::find_if(shown_.begin(), shown_.end(),
                   [id](const Api::LootGrantNotification& grant) { return grant.id == id; });
  if (found == shown_.end()) return std::nullopt;
  Api::LootGrantNotification grant = std::move(*found);
  shown_.erase(found);
  return grant;
}

bool LootGrants::SetAllowed(bool allowed) {
  const bool release = allowed && !allowed_;
  allowed_ = allowed;
  if (release) {
    std::move(queued_.begin(), queued_.end(), std::back_inserter(shown_));
    queued_.clear();
  }
  LogAlways("loot grant notifications set to: %s",
            allowed ? "allowed." : "disallowed. notifications will queue until next allowed.");
  return release;
}

}  // namespace Kest::Client::Loot
