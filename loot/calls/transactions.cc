#include "loot/calls/transactions.h"

#include <functional>
#include <string_view>

#include "base/platform.h"
#include "binding/convert/conversion_context.h"
#include "binding/json/json_adapter.h"
#include "client/service_proxy.h"
#include "log/fatal.h"
#include "log/positional_format.h"
#include "log/trace.h"
#include "loot/calls/loot_publisher.h"
#include "loot/calls/loot_retrieval.h"
#include "loot/model/loot_constants.h"
#include "loot/model/loot_id.h"
#include "plugin/app_module.h"
#include "plugin/boundary.h"

namespace Kest::Client::Loot {
namespace {

// The item of a result as the service sent it, to be refreshed from the store.
Api::PlayerLootDelta MakeDelta(const SVDS::PlayerLootDTO& record) {
  Api::PlayerLootDelta delta;
  delta.deltaCount = record.count;
  delta.playerLoot.lootName = record.lootName;
  delta.playerLoot.refId = record.refId;
  delta.playerLoot.lootId = MakeLootId(record.lootName, record.refId);
  delta.playerLoot.count = record.count;
  delta.playerLoot.expiryTime = record.expiryTime;
  return delta;
}

std::vector<Api::PlayerLootDelta> ApplyDeltas(LootInventory& inventory,
                                              const std::vector<SVDS::PlayerLootDTO>& records,
                                              int64_t sign) {
  std::vector<Api::PlayerLootDelta> deltas;
  deltas.reserve(records.size());
  for (const SVDS::PlayerLootDTO& record : records) {
    Api::PlayerLootDelta& delta = deltas.emplace_back(MakeDelta(record));
    inventory.ApplyDelta(record, sign * record.count);
    inventory.Refresh(&delta.playerLoot);
  }
  return deltas;
}

}  // namespace

Maybe<Api::PlayerLootUpdate> Transactions::Craft(const std::string& recipeName,
                                                 const std::vector<std::string>& lootIds,
                                                 std::optional<int32_t> repeat) {
  SVDS::CraftLootRefTransactionDTO payload{recipeName, {}, repeat.value_or(1)};
  for (const std::string& lootId : lootIds) {
    const LootIdParts parts = SplitLootId(lootId);
    payload.lootNameRefIds.push_back({std::string(parts.lootName), std::string(parts.refId)});
  }
  return Run("craft", "craftPlayerLootWithRefId", payload);
}

Maybe<Api::PlayerLootUpdate> Transactions::Redeem(const std::string& lootName) {
  return Run("redeem", "redeemPlayerLoot", SVDS::RedeemLootTransactionDTO{lootName});
}

template <class Payload>
Maybe<Api::PlayerLootUpdate> Transactions::Run(const char* kind, const char* method,
                                               const Payload& payload) {
  if (!loot_.Enabled()) return Failure{"Loot disabled."};
  UuidBytes uuid{};
  if (!module_.CreateUuid(&uuid)) Fatal(kFatalUuid);
  const std::string requestId = FormatUuid(uuid);
  ConversionContext context;
  std::string body;
  WriteJsonValue(context, payload, &body);
  if (!context.Ok()) return Failure{"Error serializing request payload."};
  Trace("Sending %s request id: %s, body: %s", kind, requestId.c_str(), body.c_str());
  Maybe<Api::PlayerLootUpdate> update = Failure{};
  bool isUsed = false;
  const std::function<void(Result)> use = [&](const Result& result) {
    isUsed = true;
    update = ProcessPlayerLootUpdateResponse(requestId, result);
  };
  const Maybe<Nothing> done =
      proxy_.InvokeAndWait<Result>(kLootService, method, InOnePart(use), requestId, body);
  if (done) return update;
  Trace("Failed to get response for request id: %s", requestId.c_str());
  // The result may have been applied in part.
  if (isUsed) RunAndLog("Publication", [this] { publisher_.Request(); });
  retrieval_.Post();  // the service may have carried it out all the same
  return Failure{Format("Error in ProcessPlayerLootUpdateResponse: %1", done.GetFailure().text)};
}

Maybe<Api::PlayerLootUpdate> Transactions::ProcessPlayerLootUpdateResponse(
    const std::string& requestId, const Result& result) {
  if (result.status != kOk) {
    Trace("Received unexpected status for request id: %s, status: %s", requestId.c_str(),
          result.status.c_str());
    return Failure{
        Format("Unexpected status in ProcessPlayerLootUpdateResponse: %1", result.status)};
  }
  ConversionContext context;
  std::string text;
  WriteJsonValue(context, result, &text);
  if (!context.Ok()) return Failure{"Error serializing result payload."};
  Trace("Received response for request id: %s, response: %s", requestId.c_str(), text.c_str());
  return Apply(result);
}

Api::PlayerLootUpdate Transactions::Apply(const Result& result) {
  Api::PlayerLootUpdate update;
  update.added = ApplyDeltas(inventory_, result.added, 1);
  SortByRank(kLootDeltaTypeOrder, &update.added,
             [](const Api::PlayerLootDelta& delta) -> const std::string& {
               return delta.playerLoot.type;
             });
  update.removed = ApplyDeltas(inventory_, result.removed, -1);
  for (const std::string& lootName : result.redeemed) {
    Api::PlayerLootDelta& delta = update.redeemed.emplace_back(MakeDelta({lootName, {}, 0, 0}));
    inventory_.MarkRedeemed(lootName);
    inventory_.Refresh(&delta.playerLoot);
  }
  publisher_.Request();
  return update;
}

}  // namespace Kest::Client::Loot
