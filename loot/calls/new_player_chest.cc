#include "loot/calls/new_player_chest.h"

#include <functional>

#include "base/platform.h"
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

bool NewPlayerChest::Qualifies() const {
  return loot_.Enabled() && !done_ && enabled_ && summonerLevel_ != 0 && minimumLevel_ != 0 &&
         summonerLevel_ == minimumLevel_;
}

std::string_view NewPlayerChest::Check() {
  using Result = SVDS::PlayerLootResultDTO;
  if (!Qualifies()) return kNotDone;
  const uint64_t decision = ++decisions_;
  done_ = true;  // before the call waits, so that no second one is sent
  const std::function<void(Result)> use = [this](const Result& result) { OnResult(result); };
  const std::string failure =
      proxy_.InvokeAsync<Result>(kLootService, kChestMethod, {}, false, InOnePart(use), LogFailure);
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
  if (!retrieval_.Pending() || !loot_.Enabled()) return;
  if (WallClockSeconds() >= periodBegin_ + kPeriod) return;
  module_.PostTask(kCheckTaskName, [this] { Check(); });
}

void NewPlayerChest::BeginPeriod() {
  periodBegin_ = WallClockSeconds();
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
