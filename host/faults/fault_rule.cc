#include "host/faults/fault_rule.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "host/json/json_text.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

constexpr size_t kLongestPattern = 500;
// Neither the service's results nor the resources are strings.
constexpr const char* kGarbledPayload = "garbled";
constexpr const char* kUsualError = "set by a fault rule";

// By FaultTarget: the member that names it.
constexpr std::array<std::string_view, 3> kTargetNames = {"service", "sibling", "published"};

constexpr unsigned Bit(FaultTarget target) {
  return 1U << static_cast<unsigned>(target);
}
constexpr unsigned kService = Bit(FaultTarget::kService);
constexpr unsigned kSibling = Bit(FaultTarget::kSibling);
constexpr unsigned kPublished = Bit(FaultTarget::kPublished);

struct ActionRow {
  FaultAction action;
  std::string_view word;
  unsigned targets;  // that can have it
  unsigned delayed;  // of these, where a delay may come with it
};
constexpr ActionRow kActions[] = {
    {FaultAction::kDelay, "delay", kService | kSibling | kPublished,
     kService | kSibling | kPublished},
    {FaultAction::kFail, "fail", kService | kSibling, kService | kSibling},
    {FaultAction::kRefuse, "refuse", kService, kService},
    {FaultAction::kGarble, "garble", kService | kSibling, kService | kSibling},
    {FaultAction::kDrop, "drop", kService | kPublished, 0},
    {FaultAction::kDouble, "double", kService | kPublished, kService},
    {FaultAction::kEarly, "early", kService, kService},
    {FaultAction::kUnknownId, "unknown-id", kService, kService},
    {FaultAction::kHold, "hold", kService, 0},
    {FaultAction::kDelete, "delete", kSibling, kSibling},
};

const ActionRow& RowOf(FaultAction action) {
  return *std::find_if(std::begin(kActions), std::end(kActions),
                       [action](const ActionRow& row) { return row.action == action; });
}

// The service's methods that `pattern` matches.
std::vector<std::string_view> MethodsOf(std::string_view pattern) {
  std::vector<std::string_view> methods;
  std::copy_if(kServiceMethods.begin(), kServiceMethods.end(), std::back_inserter(methods),
               [pattern](std::string_view method) { return MatchesPattern(pattern, method); });
  return methods;
}

// Why `pattern` can match nothing; empty when it may.
std::string PatternFault(FaultTarget target, const std::string& pattern) {
  if (pattern.size() > kLongestPattern) {
    return std::string("a pattern has at most ")
        .append(std::to_string(kLongestPattern))
        .append(" bytes");
  }
  if (target == FaultTarget::kService) {
    return MethodsOf(pattern).empty() ? "the platform has no service method " + pattern : "";
  }
  return pattern.starts_with('/') || pattern.starts_with('*') ? "" : "a path begins with \"/\"";
}

void ReadTarget(FieldReader& fields, FaultRule& rule) {
  int found = 0;
  for (size_t i = 0; i < kTargetNames.size(); ++i) {
    if (fields.Find(kTargetNames[i]) == nullptr) continue;
    ++found;
    rule.target = static_cast<FaultTarget>(i);
    rule.pattern = fields.String(kTargetNames[i]);
    if (const std::string fault = PatternFault(rule.target, rule.pattern); !fault.empty()) {
      fields.FailAt(kTargetNames[i], fault);
    }
  }
  if (found != 1) fields.Fail(R"(a rule has one of "service", "sibling" and "published")");
}

void ReadDelay(FieldReader& fields, FaultRule& rule) {
  const Json* value = fields.Find("delay");
  if (value == nullptr) return;
  if (value->is_object()) {
    FieldReader range(*value, fields);
    rule.delay.from = range.Integer("from", 0, kLongestDelay);
    rule.delay.to = range.Integer("to", rule.delay.from, kLongestDelay);
    range.Finish();
  } else {
    rule.delay.from = rule.delay.to = fields.Integer("delay", 0, kLongestDelay);
  }
  rule.fault.delay = rule.delay.from;
}

void FailAction(FieldReader& fields, FaultTarget target) {
  std::string message = "\"action\" of a rule for \"";
  message.append(kTargetNames[static_cast<size_t>(target)]).append("\" is one of ");
  const char* comma = "";
  for (const ActionRow& row : kActions) {
    if ((row.targets & Bit(target)) == 0) continue;
    message.append(comma).append("\"").append(row.word).append("\"");
    comma = ", ";
  }
  fields.FailAt("action", message);
}

void ReadAction(FieldReader& fields, FaultRule& rule) {
  const bool isNamed = fields.Find("action") != nullptr;
  const bool isDelay = !isNamed && fields.Find("delay") != nullptr;
  const std::string word = fields.StringOr("action", isDelay ? "delay" : "");
  const auto* const row =
      std::find_if(std::begin(kActions), std::end(kActions), [&](const ActionRow& candidate) {
        return candidate.word == word && (candidate.targets & Bit(rule.target)) != 0;
      });
  if (row == std::end(kActions)) return FailAction(fields, rule.target);
  rule.fault.action = row->action;
  if ((row->delayed & Bit(rule.target)) != 0) ReadDelay(fields, rule);
}

// The members that only some actions have.
void ReadDetails(FieldReader& fields, FaultRule& rule) {
  CallFault& fault = rule.fault;
  switch (fault.action) {
    case FaultAction::kDelay:
      if (!fault.delay) fields.Fail("member \"delay\" is missing");
      break;
    case FaultAction::kFail:
      fault.error = fields.StringOr("error", kUsualError);
      if (rule.target == FaultTarget::kSibling) {
        fault.status = static_cast<int>(fields.IntegerOr("status", fault.status, 400, 599));
      }
      break;
    case FaultAction::kRefuse:
      fault.statusWord = fields.String("status");
      if (const std::string reason = StatusWordFault(rule.pattern); !reason.empty()) {
        fields.FailAt("status", reason);
      }
      break;
    case FaultAction::kGarble: {
      const Json* payload = fields.Find("payload");
      fault.payload = payload == nullptr ? Json(kGarbledPayload) : *payload;
      break;
    }
    default:
      break;
  }
}

}  // namespace

FaultRule ReadFaultRule(FieldReader& fields) {
  FaultRule rule;
  ReadTarget(fields, rule);
  ReadAction(fields, rule);
  ReadDetails(fields, rule);
  rule.nth = fields.IntegerOr("nth", 1, 1, kMax32);
  const bool isOnce = fields.Find("nth") != nullptr;
  rule.times = fields.IntegerOr("times", isOnce ? 1 : FaultRule::kAlways, 1, FaultRule::kMostTimes);
  rule.probability = fields.NumberOr("probability", 1, 0, 1);
  fields.UnsignedOr("id", 0);
  fields.UnsignedOr("matched", 0);
  fields.UnsignedOr("applied", 0);
  return rule;
}

Json FaultRuleJson(const FaultRule& rule) {
  const CallFault& fault = rule.fault;
  Json json = {{std::string(kTargetNames[static_cast<size_t>(rule.target)]), rule.pattern},
               {"action", FaultActionName(fault.action)}};
  if (rule.times != FaultRule::kAlways) {  // read again, a rule with "nth" alone is for one call
    json["nth"] = rule.nth;
    json["times"] = rule.times;
  }
  json["probability"] = rule.probability;
  if (fault.delay && rule.delay.from == rule.delay.to) {
    json["delay"] = rule.delay.from;
  } else if (fault.delay) {
    json["delay"] = {{"from", rule.delay.from}, {"to", rule.delay.to}};
  }
  if (fault.action == FaultAction::kFail) {
    json["error"] = fault.error;
    if (rule.target == FaultTarget::kSibling) json["status"] = fault.status;
  }
  if (fault.action == FaultAction::kRefuse) json["status"] = fault.statusWord;
  if (fault.action == FaultAction::kGarble) json["payload"] = fault.payload;
  json["id"] = rule.id;
  json["matched"] = rule.matched;
  json["applied"] = rule.applied;
  return json;
}

std::string StatusWordFault(std::string_view pattern) {
  const std::vector<std::string_view> methods = MethodsOf(pattern);
  const auto without = std::find_if_not(methods.begin(), methods.end(), HasStatusWord);
  if (without == methods.end()) return {};
  std::string fault = "the result of ";
  fault.append(*without).append(" has no status word; one has that of ");
  const char* comma = "";
  for (const std::string_view method : kServiceMethods) {
    if (!HasStatusWord(method)) continue;
    fault.append(comma).append(method);
    comma = ", ";
  }
  return fault;
}

std::string_view FaultActionName(FaultAction action) {
  return RowOf(action).word;
}

bool MatchesPattern(std::string_view pattern, std::string_view text) {
  size_t p = 0;
  size_t t = 0;
  size_t star = std::string_view::npos;  // the last one met; it stands for text up to `resume`
  size_t resume = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace Kest::Host
