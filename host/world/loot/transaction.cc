#include "host/world/loot/transaction.h"

namespace Kest::Host {
namespace {

int64_t ExpiryTime(const WorldData& data, const LootKey& key) {
  const LootDefinition* definition = data.FindDefinition(key.lootName);
  return definition == nullptr ? -1 : definition->expiryTime;
}

Json RecordsJson(const CountsByKey& counts, const WorldData& data) {
  Json records = Json::array();
  for (const auto& [key, count] : counts) {
    records.push_back(LootRecordJson(key, {count, ExpiryTime(data, key)}));
  }
  return records;
}

}  // namespace

Transaction Refused(std::string status, std::string details) {
  Transaction transaction;
  transaction.status = std::move(status);
  transaction.details = std::move(details);
  return transaction;
}

Json TransactionJson(const Transaction& transaction, const WorldData& data) {
  return Json{{"status", transaction.status},
              {"details", transaction.details},
              {"added", RecordsJson(transaction.added, data)},
              {"removed", RecordsJson(transaction.removed, data)},
              {"redeemed", transaction.redeemed}};
}

void ApplyTransaction(const Transaction& transaction, const WorldData& data, Inventory& inventory) {
  for (const auto& [key, count] : transaction.removed) inventory.Add(key, -count, -1);
  for (const auto& [key, count] : transaction.added) {
    inventory.Add(key, count, ExpiryTime(data, key));
  }
}

}  // namespace Kest::Host
