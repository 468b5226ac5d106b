#include "host/faults/fault_rules.h"

#include <algorithm>
#include <utility>

namespace Kest::Host {
namespace {

auto IsOf(FaultTarget target, std::string_view pattern) {
  return [target, pattern](const FaultRule& rule) {
    return rule.target == target && rule.pattern == pattern;
  };
}

}  // namespace

void FaultRules::Set(std::vector<FaultRule> rules, std::optional<uint64_t> seed, bool keeps) {
  rules_ = std::move(rules);
  for (FaultRule& rule : rules_) rule.id = ++lastId_;
  seed_ = seed.value_or(usualSeed_);
  random_ = SeededRandom(seed_);
  keeps_ = keeps;
}

bool FaultRules::Add(FaultRule rule, bool isFirst) {
  if (rules_.size() >= kMostRules) return false;
  rule.id = ++lastId_;
  rules_.insert(isFirst ? rules_.begin() : rules_.end(), std::move(rule));
  return true;
}

bool FaultRules::PutFirst(FaultRule rule) {
  const bool replaces = std::any_of(rules_.begin(), rules_.end(), IsOf(rule.target, rule.pattern));
  if (!replaces && rules_.size() >= kMostRules) return false;
  Remove(rule.target, rule.pattern);
  return Add(std::move(rule), true);
}

void FaultRules::Remove(FaultTarget target, std::string_view pattern) {
  std::erase_if(rules_, IsOf(target, pattern));
}

bool FaultRules::Remove(uint64_t id) {
  return std::erase_if(rules_, [id](const FaultRule& rule) { return rule.id == id; }) > 0;
}

std::optional<CallFault> FaultRules::Next(FaultTarget target, std::string_view name) {
  std::optional<CallFault> decided;
  for (FaultRule& rule : rules_) {
    if (rule.target != target || !MatchesPattern(rule.pattern, name)) continue;
    ++rule.matched;
    if (!decided) decided = Apply(rule);
  }
  if (decided && listener_) listener_(name, FaultActionName(decided->action));
  return decided;
}

std::optional<CallFault> FaultRules::Apply(FaultRule& rule) {
  if (rule.matched < rule.nth || rule.applied >= rule.times) return std::nullopt;
  if (rule.probability < 1 && random_.Fraction() >= rule.probability) return std::nullopt;
  ++rule.applied;
  CallFault fault = rule.fault;
  if (rule.delay.from < rule.delay.to) {
    const auto span = static_cast<uint64_t>(rule.delay.to - rule.delay.from);
    fault.delay = rule.delay.from + static_cast<int64_t>(random_.Below(span + 1));
  }
  return fault;
}

Json FaultRules::ToJson() const {
  Json rules = Json::array();
  for (const FaultRule& rule : rules_) rules.push_back(FaultRuleJson(rule));
  return Json{{"seed", seed_}, {"keep", keeps_}, {"rules", std::move(rules)}};
}

}  // namespace Kest::Host
