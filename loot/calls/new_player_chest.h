// NewPlayerChest requests the chest that a player gets on reaching the configured level.
// Threads: module tasks only; it does not wait for the service's response.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "loot/calls/forward.h"
#include "loot/model/condition.h"
#include "loot/state/loot_switch.h"
#include "loot/wire/loot_dtos.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot {

class NewPlayerChest {
 public:
  // All outlive it.
  NewPlayerChest(AppModule& module, ServiceProxy& proxy, const LootSwitch& loot,
                 LootRetrieval& retrieval)
      : module_(module), proxy_(proxy), loot_(loot), retrieval_(retrieval) {}

  // Starts "checkAndGrantNewPlayerChest" when the player qualifies, and returns "SUBMITTED";
  // otherwise, or when the call cannot be started, "NOT_DONE". A granted chest leads to a new
  // retrieval.
  std::string_view Check();

  // Posts the check as a task, unless an inventory has been retrieved already or the period after
  // the login is over.
  void Schedule();

  // Begins the period in which Schedule posts.
  void BeginPeriod();

  // Configuration values; each schedules the check.
  void SetEnabled(bool enabled);
  void SetMinimumLevel(uint32_t level);

  // Checks when the level is another than the last known one.
  void OnSummoner(const Api::Summoner& summoner);
  // Keeps the level, without a check.
  void SetSummonerLevel(uint32_t level) { summonerLevel_ = level; }

  // Whether the check counts as done. Set to false, it runs at once and its result is returned.
  bool IsDone() const { return done_; }
  std::string SetDone(bool done);

  // What a check needs to request the chest. It is for the moment the configured level is reached:
  // a higher level does not qualify.
  Conditions<6> ChestConditions() const;
  // What Schedule needs to post the check.
  Conditions<3> ScheduleConditions() const;

  uint32_t summonerLevel() const { return summonerLevel_; }
  uint32_t minimumLevel() const { return minimumLevel_; }
  // When Schedule stops posting, in seconds since 1970.
  int64_t PeriodEnd() const;
  // The host's time, in the same seconds.
  int64_t Now() const;

 private:
  void OnResult(const SVDS::PlayerLootResultDTO& result);
  static void LogFailure(const Failure& failure);

  AppModule& module_;
  ServiceProxy& proxy_;
  const LootSwitch& loot_;
  LootRetrieval& retrieval_;
  bool enabled_ = false;
  bool done_ = false;
  uint64_t decisions_ = 0;      // about done_: a call that was not sent takes back its own only
  uint32_t minimumLevel_ = 0;   // 0: not configured
  uint32_t summonerLevel_ = 0;  // 0: not known
  int64_t periodBegin_ = 0;     // seconds since 1970
};

}  // namespace Kest::Client::Loot
