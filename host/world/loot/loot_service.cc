#include "host/world/loot/loot_service.h"

#include "host/world/data/platform_constants.h"
#include "host/world/json/json_reader.h"
#include "host/world/loot/craft.h"
#include "host/world/loot/loot_definitions_json.h"
#include "host/world/loot/redeem.h"

namespace Kest::Host {

Maybe<JsonValue> LootService::Call(std::string_view method, const JsonValue::Array& arguments) {
  if (method == kRetrievalMethod) return Retrieve(arguments);
  if (method == kClientConfigurationMethod) return data_.clientConfiguration;
  if (method == kCraftMethod || method == kRedeemMethod) return Transact(method, arguments);
  if (method == kNewPlayerChestMethod) return TransactionJson(GrantNewPlayerChest(), data_);
  return Failure{"service loot has no method " + std::string(method), 404};
}

Maybe<JsonValue> LootService::Retrieve(const JsonValue::Array& arguments) const {
  int64_t known[3] = {};
  bool isGood = arguments.size() == std::size(known);
  for (size_t i = 0; isGood && i < std::size(known); ++i) {
    const int64_t* version = arguments[i].AsSigned();
    isGood = version != nullptr;
    if (isGood) known[i] = *version;
  }
  if (!isGood) return Failure{"expected three whole numbers: the versions held", 400};
  return PlayerLootDefinitionsJson(data_, inventory_, {known[0], known[1], known[2]});
}

Maybe<JsonValue> LootService::Transact(std::string_view method, const JsonValue::Array& arguments) {
  if (arguments.size() != 2 || arguments[0].AsText() == nullptr ||
      arguments[1].AsText() == nullptr) {
    return Failure{"expected two texts: the request id and the transaction as JSON", 400};
  }
  const auto request = ReadJson(*arguments[1].AsText());
  Transaction transaction;
  if (!request) {
    transaction = Refused("INVALID_REQUEST", DescribeIssue("request", request.GetFailure()));
  } else if (method == kCraftMethod) {
    transaction = Craft(data_, request.GetValue(), inventory_, collections_, random_);
  } else {
    transaction = Redeem(data_, request.GetValue(), inventory_, collections_);
  }
  return TransactionJson(transaction, data_);
}

Transaction LootService::GrantNewPlayerChest() {
  const LootKey key{data_.newPlayerChest, ""};
  if (data_.newPlayerChest.empty()) return Refused("NOT_ELIGIBLE", "there is no such chest");
  if (newPlayerChestGranted_) return Refused("ALREADY_GRANTED", key.lootName);
  Transaction transaction;
  transaction.added[key] = 1;
  if (!inventory_.CanApply({}, transaction.added)) return Refused("INVENTORY_FULL", key.lootName);
  ApplyTransaction(transaction, data_, inventory_);
  newPlayerChestGranted_ = true;
  return transaction;
}

}  // namespace Kest::Host
