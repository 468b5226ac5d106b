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
  // `data` must outlive the service. `seed` counts unless the world says how far its numbers have
  // been used.
  LootService(WorldData& data, uint64_t seed)
      : data_(data), random_(data.state.random.value_or(RandomPlace{seed, 0})) {}

  // Calls a method. A failure is the service's own error: no such method, or arguments of a wrong
  // form. A transaction that is refused is a result with another status word.
  Maybe<Json> Call(std::string_view method, const Json& arguments);

  PreparedResults& prepared() { return prepared_; }
  const RandomPlace& randomPlace() const { return random_.place(); }
  void SetRandomPlace(const RandomPlace& place) { random_ = SeededRandom(place); }

 private:
  Maybe<Json> Retrieve(const Json& arguments) const;
  Maybe<Json> Transact(std::string_view method, const Json& arguments);
  Transaction GrantNewPlayerChest();

  WorldData& data_;
  SeededRandom random_;
  PreparedResults prepared_;
};

}  // namespace Kest::Host
