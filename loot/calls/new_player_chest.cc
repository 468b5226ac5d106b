#include "loot/calls/new_player_chest.h"

#include <functional>
#include <string>

#include "base/platform.h"
#include "client/service_proxy.h"
#include "log/logger.h"
#include "log/trace.h"
#include "loot/model/loot_constants.h"
#include "plugin/app_module.h"

namespace Kest::Client::Loot {
namespace {

constexpr const char* kMethod = "checkAndGrantNewPlayerChest";
// The task is named after the retrieval it once ran, and hosts know it by that name.
constexpr const char* kTaskName = "LootPlugin.RetrievePlayerLootAndDefinitions";

}  // namespace

std::string_view NewPlayerChest::Check() {
  using Answer = Maybe<SVDS::PlayerLootResultDTO>;
  if (!status_.QualifiesForNewPlayerChest()) return kNotDone;
  status_.newPlayerCheckDone = true;  // before the call waits, so that no second one is sent
  const std::function<void(Answer)> onDone = [this](const Answer& answer) { OnAnswer(answer); };
  const std::string failure =
      proxy_.InvokeAsync<SVDS::PlayerLootResultDTO>(kLootService, kMethod, {}, false, onDone);
  if (failure.empty()) return kSubmitted;
  status_.newPlayerCheckDone = false;  // nothing was sent
  OnAnswer(Failure{failure});
  return kNotDone;
}

void NewPlayerChest::OnAnswer(const Maybe<SVDS::PlayerLootResultDTO>& answer) {
  if (!answer) {
    return LogError("Failed to get response for checkAndGrantNewPlayerChest, returned error: %s",
                    answer.GetFailure().text.c_str());
  }
  const SVDS::PlayerLootResultDTO& result = answer.GetValue();
  if (result.status != kOk) {
    Trace("Received unexpected status for request checkAndGrantNewPlayerChest, status: %s",
          result.status.c_str());
  }
  if (!result.added.empty()) actions_.PostRetrieval();
}

void NewPlayerChest::Schedule() {
  if (!status_.MayScheduleCheck(WallClockSeconds())) return;
  module_.PostTask(kTaskName, [this] { Check(); });
}

}  // namespace Kest::Client::Loot
