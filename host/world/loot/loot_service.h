// The platform service "loot": inventory, definitions, craft, redeem and the new-player chest, on
// real state. What it returns depends on the world, the calls so far and the seed alone.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/world/data/seeded_random.h"
#include "host/world/loot/prepared_results.h"
#include "host/world/loot/transaction.h"

namespace Kest::Host {

class LootService {
 public:
  // All must outlive the service.
  LootService(const WorldData& data, Inventory& inventory, PlatformCollections& collections,
              uint64_t seed)
      : data_(data), inventory_(inventory), collections_(collections), random_(seed) {}

  // Calls a method. A failure is the service's own error: no such method, or arguments of a wrong
  // form. A transaction that is refused is a result with another status word.
  Maybe<Json> Call(std::string_view method, const Json& arguments);

  PreparedResults& prepared() { return prepared_; }
  bool newPlayerChestGranted() const { return newPlayerChestGranted_; }

 private:
  Maybe<Json> Retrieve(const Json& arguments) const;
  Maybe<Json> Transact(std::string_view method, const Json& arguments);
  Transaction GrantNewPlayerChest();

  const WorldData& data_;
  Inventory& inventory_;
  PlatformCollections& collections_;
  SeededRandom random_;
  PreparedResults prepared_;
  bool newPlayerChestGranted_ = false;
};

}  // namespace Kest::Host
