#include "host/world/loot/loot_service.h"

#include "host/world/data/platform_constants.h"
#include "host/world/input/document.h"
#include "host/world/loot/craft.h"
#include "host/world/loot/loot_definitions_json.h"
#include "host/world/loot/redeem.h"

namespace Kest::Host {

Maybe<Json> LootService::Call(std::string_view method, const Json& arguments) {
  if (method == kRetrievalMethod) return Retrieve(arguments);
  if (method == kClientConfigurationMethod) return data_.clientConfiguration;
  if (method == kCraftMethod || method == kRedeemMethod) return Transact(method, arguments);
  if (method == kNewPlayerChestMethod) return TransactionJson(GrantNewPlayerChest(), data_);
  return Failure{"service loot has no method " + std::string(method), 404};
}

Maybe<Json> LootService::Retrieve(const Json& arguments) const {
  int64_t known[3] = {};
  bool isGood = arguments.size() == std::size(known);
  for (size_t i = 0; isGood && i < std::size(known); ++i) {
    isGood = arguments[i].is_number_integer();
    if (isGood) known[i] = arguments[i].get<int64_t>();
  }
  if (!isGood) return Failure{"expected three integers: the versions held", 400};
  return PlayerLootDefinitionsJson(data_, data_.inventory, {known[0], known[1], known[2]});
}

Maybe<Json> LootService::Transact(std::string_view method, const Json& arguments) {
  if (arguments.size() != 2 || !arguments[0].is_string() || !arguments[1].is_string()) {
    return Failure{"expected two strings: the request id and the transaction as JSON", 400};
  }
  const auto request = Document::FromJson("request", arguments[1].get_ref<const std::string&>());
  Transaction transaction;
  if (!request) {
    transaction = Refused("INVALID_REQUEST", request.GetFailure().text);
  } else if (method == kCraftMethod) {
    transaction =
        Craft(data_, request.GetValue(), data_.inventory, data_.collections, prepared_, random_);
  } else {
    transaction = Redeem(data_, request.GetValue(), data_.inventory, data_.collections);
  }
  return TransactionJson(transaction, data_);
}

Transaction LootService::GrantNewPlayerChest() {
  const LootKey key{data_.newPlayerChest, ""};
  if (data_.newPlayerChest.empty()) return Refused("NOT_ELIGIBLE", "there is no such chest");
  if (data_.state.newPlayerChestGranted) return Refused("ALREADY_GRANTED", key.lootName);
  Transaction transaction;
  transaction.added[key] = 1;
  if (!data_.inventory.CanApply({}, transaction.added))
    return Refused("INVENTORY_FULL", key.lootName);
  ApplyTransaction(transaction, data_, data_.inventory);
  data_.state.newPlayerChestGranted = true;
  return transaction;
}

}  // namespace Kest::Host
