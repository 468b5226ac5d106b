// The platform service "loot": inventory, definitions, craft, redeem and the new-player chest, on
// real state. Its answers depend on the world, the calls so far and the seed alone.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/world/data/seeded_random.h"
#include "host/world/loot/transaction.h"

namespace Kest::Host {

class LootService {
 public:
  // All must outlive the service.
  LootService(const WorldData& data, Inventory& inventory, Collections& collections, uint64_t seed)
      : data_(data), inventory_(inventory), collections_(collections), random_(seed) {}

  // Calls a method. A failure is the service's own error: no such method, or arguments of a wrong
  // form. A transaction that is refused is a result with another status word.
  Maybe<JsonValue> Call(std::string_view method, const JsonValue::Array& arguments);

  bool newPlayerChestGranted() const { return newPlayerChestGranted_; }

 private:
  Maybe<JsonValue> Retrieve(const JsonValue::Array& arguments) const;
  Maybe<JsonValue> Transact(std::string_view method, const JsonValue::Array& arguments);
  Transaction GrantNewPlayerChest();

  const WorldData& data_;
  Inventory& inventory_;
  Collections& collections_;
  SeededRandom random_;
  bool newPlayerChestGranted_ = false;
};

}  // namespace Kest::Host
