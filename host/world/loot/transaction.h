// What a transaction of the loot service did, and its form on the wire.
#pragma once

#include <string>
#include <vector>

#include "host/world/data/world_data.h"

namespace Kest::Host {

struct Transaction {
  std::string status = "OK";  // any other word: nothing happened
  std::string details;        // why, in words
  CountsByKey added;          // by how much each item grew, and which fell
  CountsByKey removed;
  std::vector<std::string> redeemed;  // loot names
};

// A transaction that did nothing.
Transaction Refused(std::string status, std::string details);

// The service's result record. The counts in it are the changes, not what is held afterwards.
Json TransactionJson(const Transaction& transaction, const WorldData& data);

// Takes and gives what `transaction` lists. REQUIRES: inventory.CanApply holds for it.
void ApplyTransaction(const Transaction& transaction, const WorldData& data, Inventory& inventory);

}  // namespace Kest::Host
