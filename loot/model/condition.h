// Condition is one of the things that a decision needs, with a sentence for people on why it holds
// or does not. The decision is made from its conditions and an explanation lists the same ones, so
// the two cannot differ. All strings are constants: making a list of conditions allocates nothing.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace Kest::Client::Loot {

struct Condition {
  std::string_view name;  // for programs
  bool holds = false;
  std::string_view met;
  std::string_view unmet;

  constexpr std::string_view Reason() const { return holds ? met : unmet; }
};

// In the order in which they are looked at: the first that does not hold is the reason.
template <size_t count>
using Conditions = std::array<Condition, count>;

template <size_t count>
constexpr bool AllHold(const Conditions<count>& conditions) {
  return std::ranges::all_of(conditions, &Condition::holds);
}

// Why they do not all hold; `met` when they do.
template <size_t count>
constexpr std::string_view ReasonOf(const Conditions<count>& conditions, std::string_view met) {
  const auto unmet = std::ranges::find(conditions, false, &Condition::holds);
  return unmet == conditions.end() ? met : unmet->unmet;
}

}  // namespace Kest::Client::Loot
