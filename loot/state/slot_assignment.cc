#include "loot/state/slot_assignment.h"

#include <algorithm>

namespace Kest::Client::Loot {
namespace {

constexpr uint32_t kNotReached = static_cast<uint32_t>(-1);

}  // namespace

SlotAssignment::SlotAssignment(size_t demandCount, const Supplies& supplies)
    : suppliesOf_(demandCount) {
  for (const auto& [demands, amount] : supplies) {
    const auto number = static_cast<uint32_t>(supplies_.size());
    Supply& supply = supplies_.emplace_back(Supply{amount, {}});
    for (const uint32_t demand : demands) {
      supply.shares.push_back({demand, 0});
      suppliesOf_[demand].push_back(number);
    }
  }
}

int64_t SlotAssignment::Meet(uint32_t demand, int64_t quantity) {
  for (const uint32_t supply : suppliesOf_[demand]) {  // what is left, without a search for each
    quantity -= ApplyPath(demand, demand, supply, quantity);
  }
  while (quantity > 0) {
    const int64_t amount = Augment(demand, quantity);
    if (amount == 0) break;
    quantity -= amount;
  }
  return quantity;
}

// Breadth first, so that the number of paths does not depend on the amounts (Edmonds and Karp).
int64_t SlotAssignment::Augment(uint32_t demand, int64_t most) {
  steps_.assign(suppliesOf_.size(), {kNotReached, 0});
  steps_[demand].from = demand;
  std::vector<bool> seen(supplies_.size());
  std::vector<uint32_t> reached = {demand};
  for (size_t next = 0; next < reached.size(); ++next) {
    const uint32_t current = reached[next];
    for (const uint32_t supply : suppliesOf_[current]) {
      if (seen[supply]) continue;
      seen[supply] = true;
      if (supplies_[supply].left > 0) return ApplyPath(demand, current, supply, most);
      for (const Share& share : supplies_[supply].shares) {
        if (share.amount == 0 || steps_[share.demand].from != kNotReached) continue;
        steps_[share.demand] = {current, supply};
        reached.push_back(share.demand);
      }
    }
  }
  return 0;
}

// `end` takes from `supply`, which has some left, and leaves what it has of another supply to the
// demand it was reached from, and so on back to `demand`. Returns the amount moved.
int64_t SlotAssignment::ApplyPath(uint32_t demand, uint32_t end, uint32_t supply, int64_t most) {
  int64_t amount = std::min(most, supplies_[supply].left);
  for (uint32_t at = end; at != demand; at = steps_[at].from) {
    amount = std::min(amount, AmountOf(steps_[at].supply, at));
  }
  supplies_[supply].left -= amount;
  AmountOf(supply, end) += amount;
  for (uint32_t at = end; at != demand; at = steps_[at].from) {
    AmountOf(steps_[at].supply, at) -= amount;
    AmountOf(steps_[at].supply, steps_[at].from) += amount;
  }
  return amount;
}

int64_t& SlotAssignment::AmountOf(uint32_t supply, uint32_t demand) {
  return std::ranges::lower_bound(supplies_[supply].shares, demand, {}, &Share::demand)->amount;
}

}  // namespace Kest::Client::Loot
