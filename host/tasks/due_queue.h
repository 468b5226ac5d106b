// Values that become due at set host times. Values of one time come out in the order they were put
// in.
//
// Threads: no lock; the owner guards it.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <utility>

#include "host/clock/host_clock.h"

namespace Kest::Host {

template <typename Value>
class DueQueue {
 public:
  void Put(HostTime due, Value value) { values_.emplace(due, std::move(value)); }

  // The first value due at `now`, or nothing.
  std::optional<Value> Take(HostTime now) {
    if (values_.empty() || values_.begin()->first > now) return std::nullopt;
    std::optional<Value> value(std::move(values_.begin()->second));
    values_.erase(values_.begin());
    return value;
  }

  // When the next value is due, or nothing when none waits.
  std::optional<HostTime> NextDue() const {
    if (values_.empty()) return std::nullopt;
    return values_.begin()->first;
  }

  template <typename Test>
  void DropIf(Test test) {
    std::erase_if(values_, [&](const auto& entry) { return test(entry.second); });
  }
  size_t Size() const { return values_.size(); }
  bool Empty() const { return values_.empty(); }
  void Clear() { values_.clear(); }

 private:
  std::multimap<HostTime, Value> values_;  // equal keys keep the order of insertion
};

}  // namespace Kest::Host
