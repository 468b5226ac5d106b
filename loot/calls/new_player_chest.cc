#include "loot/calls/new_player_chest.h"

#include <functional>
#include <utility>

#include "client/service_proxy.h"
#include "log/logger.h"
#include "log/trace.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/model/loot_constants.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kChestMethod = "checkAndGrantNewPlayerChest";
// The task is named after the retrieval it once ran, and hosts know it by that name.
constexpr const char* kCheckTaskName = "LootPlugin.RetrievePlayerLootAndDefinitions";
constexpr int64_t kPeriod = 30;  // seconds

}  // namespace

Conditions<6> NewPlayerChest::ChestConditions() const {
  return {
      {{"isLootEnabled", loot_.Enabled(), "Loot is enabled.", "Loot is disabled."},
       {"isNotDone", !done_, "The chest was not requested yet.",
        "The chest was requested already."},
       {"isChestEnabled", enabled_, "The configuration value \"NewPlayerChestEnabled\" is true.",
        "The configuration value \"NewPlayerChestEnabled\" is not true."},
       {"hasSummonerLevel", summonerLevel_ != 0, "The player's level is known.",
        "The player's level is not known."},
       {"hasMinimumLevel", minimumLevel_ != 0,
        "The configuration value \"MinSummonerLevel\" is set.",
        "The configuration value \"MinSummonerLevel\" is not set."},
       {"isAtMinimumLevel", summonerLevel_ == minimumLevel_,
        "The player's level is the configured one.",
        "The player's level is not the configured one; a higher level does not qualify either."}}};
}

Conditions<3> NewPlayerChest::ScheduleConditions() const {
  return {{{"isRetrievalPending", retrieval_.Pending(), "No inventory has been retrieved yet.",
            "An inventory has been retrieved already."},
           {"isLootEnabled", loot_.Enabled(), "Loot is enabled.", "Loot is disabled."},
           {"isInPeriod", Now() < PeriodEnd(), "The player signed in just now.",
            "The time after the sign-in is over."}}};
}

int64_t NewPlayerChest::Now() const {
  return module_.NowSeconds();
}

int64_t NewPlayerChest::PeriodEnd() const {
  return periodBegin_ + kPeriod;
}

std::string_view NewPlayerChest::Check() {
  using Result = SVDS::PlayerLootResultDTO;
  if (!AllHold(ChestConditions())) return kNotDone;
  const std::function<void(Result)> use = [this](const Result& result) { OnResult(result); };
  Preparation<Result> prepare = InOnePart(use);  // there may be no memory for it
  const uint64_t decision = ++decisions_;
  done_ = true;  // before the call waits, so that no second one is sent
  const std::string failure = proxy_.InvokeAsync<Result>(kLootService, kChestMethod, {}, false,
                                                         std::move(prepare), LogFailure);
  if (failure.empty()) return kSubmitted;
  if (decision == decisions_) done_ = false;  // nothing was sent
  LogFailure({failure});
  return kNotDone;
}

void NewPlayerChest::LogFailure(const Failure& failure) {
  LogError("Failed to get response for checkAndGrantNewPlayerChest, returned error: %s",
           failure.text.c_str());
}

void NewPlayerChest::OnResult(const SVDS::PlayerLootResultDTO& result) {
  if (result.status != kOk) {
    Trace("Received unexpected status for request checkAndGrantNewPlayerChest, status: %s",
          result.status.c_str());
  }
  if (!result.added.empty()) retrieval_.Post();
}

void NewPlayerChest::Schedule() {
  if (!AllHold(ScheduleConditions())) return;
  module_.PostTask(kCheckTaskName, [this] { Check(); });
}

void NewPlayerChest::BeginPeriod() {
  periodBegin_ = Now();
}

void NewPlayerChest::SetEnabled(bool enabled) {
  enabled_ = enabled;
  Schedule();
}

void NewPlayerChest::SetMinimumLevel(uint32_t level) {
  minimumLevel_ = level;
  Schedule();
}

void NewPlayerChest::OnSummoner(const Api::Summoner& summoner) {
  if (summoner.summonerLevel == summonerLevel_) return;
  summonerLevel_ = summoner.summonerLevel;
  Check();
}

std::string NewPlayerChest::SetDone(bool done) {
  ++decisions_;
  done_ = done;
  return std::string(done ? kNotDone : Check());
}

}  // namespace Kest::Client::Loot
