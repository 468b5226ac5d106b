// LootStatus: what configuration, login and retrieval have told the plugin so far, and the
// conditions that follow from it. Times are whole seconds since 1970, compared as signed 64-bit
// numbers. Threads: no lock; handlers and module tasks only.
#pragma once

#include <cstdint>

namespace Kest::Client::Loot {

struct LootStatus {
  // How long after the login a configuration change may still start the new-player check.
  static constexpr int64_t kRetrievalPeriod = 30;

  bool configEnabled = false;
  bool clientEnabled = false;
  bool enabled = false;          // what both said when they were last compared
  bool retrievalPending = true;  // no inventory has been applied yet; never set again
  bool newPlayerChestEnabled = false;
  bool newPlayerCheckDone = false;
  uint32_t minimumSummonerLevel = 0;  // 0: not configured
  uint32_t summonerLevel = 0;         // 0: not known
  bool connected = false;
  uint64_t summonerId = 0;
  int64_t loginTime = 0;

  // Brings `enabled` up to date and returns whether it turned over.
  [[nodiscard]] bool RecomputeEnabled();

  // A change may post the new-player check: nothing was retrieved yet and the login is recent.
  bool MayScheduleCheck(int64_t now) const;

  // The chest belongs to the moment the configured level is reached, so a higher level is refused.
  bool QualifiesForNewPlayerChest() const;
};

}  // namespace Kest::Client::Loot
