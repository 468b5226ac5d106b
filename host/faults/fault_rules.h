// The rules of what goes wrong, in order: the first that is for a call and whose turn it is decides
// what happens to it.
//
// Counting: each rule counts every call that it matches, also those that another rule decides.
// Random:   chance and delays come from numbers of its own, the same for the same seed and calls.
// Threads:  the scheduler's.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/faults/fault_rule.h"
#include "host/world/data/seeded_random.h"

namespace Kest::Host {

class FaultRules {
 public:
  static constexpr size_t kMostRules = 100;

  // `seed` is that of rules which come without one.
  explicit FaultRules(uint64_t seed) : usualSeed_(seed), seed_(seed), random_(seed) {}

  // Replaces all rules and begins their counts and random numbers from the start. `keeps`: they are
  // to be set again when the world begins again.
  void Set(std::vector<FaultRule> rules, std::optional<uint64_t> seed, bool keeps);
  void Clear() { Set({}, std::nullopt, false); }
  // Puts a rule after the others, or before them, which keep their counts and random numbers.
  // False: there are as many as there may be.
  bool Add(FaultRule rule, bool isFirst = false);
  // Puts a rule before the others, in place of those of the same target and pattern. False: there
  // are as many others as there may be; nothing changed.
  bool PutFirst(FaultRule rule);
  void Remove(FaultTarget target, std::string_view pattern);
  // False: no rule has that id.
  bool Remove(uint64_t id);

  // `listener` learns of each fault when it is applied: the name, and the word of the action.
  using Listener = std::function<void(std::string_view name, std::string_view action)>;
  void SetListener(Listener listener) { listener_ = std::move(listener); }

  // What happens to the next call of that name; nothing: the usual.
  std::optional<CallFault> Next(FaultTarget target, std::string_view name);

  // {"seed", "keep", "rules": [..]}, which can be read again.
  Json ToJson() const;
  bool keeps() const { return keeps_; }

 private:
  std::optional<CallFault> Apply(FaultRule& rule);

  const uint64_t usualSeed_;
  uint64_t seed_;
  SeededRandom random_;
  std::vector<FaultRule> rules_;
  uint64_t lastId_ = 0;
  bool keeps_ = false;
  Listener listener_;
};

}  // namespace Kest::Host
