#include "loot/state/loot_status.h"

namespace Kest::Client::Loot {

bool LootStatus::RecomputeEnabled() {
  const bool wasEnabled = enabled;
  enabled = configEnabled && clientEnabled;
  return enabled != wasEnabled;
}

bool LootStatus::MayScheduleCheck(int64_t now) const {
  return retrievalPending && enabled && now < loginTime + kRetrievalPeriod;
}

bool LootStatus::QualifiesForNewPlayerChest() const {
  return enabled && !newPlayerCheckDone && newPlayerChestEnabled && summonerLevel != 0 &&
         minimumSummonerLevel != 0 && summonerLevel == minimumSummonerLevel;
}

}  // namespace Kest::Client::Loot
