// SlotAssignment gives the player's items to the slots of a recipe: a maximum flow from supplies to
// demands. Exact; the time is polynomial in demands and supplies and does not depend on their
// amounts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace Kest::Client::Loot {

// Amounts by the demands that may be met from them, as rising indices.
using Supplies = std::map<std::vector<uint32_t>, int64_t>;

class SlotAssignment {
 public:
  // REQUIRES: no amount is negative, no index reaches `demandCount`.
  SlotAssignment(size_t demandCount, const Supplies& supplies);

  // Meets `quantity` of a demand as far as the supplies go, without taking from what demands met
  // before have in all; returns what is missing. REQUIRES: a demand not met before.
  int64_t Meet(uint32_t demand, int64_t quantity);

 private:
  struct Share {
    uint32_t demand;
    int64_t amount;
  };
  struct Supply {
    int64_t left;
    std::vector<Share> shares;  // by rising demand
  };
  // How the search came to a demand: by what it has of a supply, which `from` can take.
  struct Step {
    uint32_t from;
    uint32_t supply;
  };

  int64_t Augment(uint32_t demand, int64_t most);
  int64_t ApplyPath(uint32_t demand, uint32_t end, uint32_t supply, int64_t most);
  int64_t& AmountOf(uint32_t supply, uint32_t demand);

  std::vector<Supply> supplies_;
  std::vector<std::vector<uint32_t>> suppliesOf_;  // by demand
  std::vector<Step> steps_;                        // of the last search, by demand
};

}  // namespace Kest::Client::Loot
