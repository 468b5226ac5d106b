#include <algorithm>

#include "host/world/controls/control_call.h"
#include "host/world/data/platform_constants.h"

namespace Kest::Host {
namespace {

using Ending = PlatformServiceProxy::Ending;

Failure UnknownMethod(const std::string& method) {
  return Failure{"the platform has no service method " + method, 404};
}

Failure TooManyRules() {
  return Failure{"there are " + std::to_string(FaultRules::kMostRules) + " rules already", 409};
}

bool IsServiceMethod(const std::string& method) {
  return std::find(kServiceMethods.begin(), kServiceMethods.end(), method) != kServiceMethods.end();
}

Ending ReadEnding(FieldReader& fields) {
  Ending ending;
  const std::string action = fields.String("action");
  if (action == "fail") {
    ending.kind = Ending::Kind::kFail;
    ending.error = fields.StringOr("error", "failed by a control");
  } else if (action == "respond") {
    ending.kind = Ending::Kind::kRespond;
    const Json* payload = fields.Find("payload");
    if (payload == nullptr) {
      fields.Fail("member \"payload\" is missing");
    } else {
      ending.result = *payload;
    }
  } else if (action != "release") {
    fields.FailAt("action", R"("action" is one of "release", "fail", "respond")");
  }
  return ending;
}

void CheckOverride(FieldReader& fields, const FaultRule& rule) {
  const CallFault& fault = rule.fault;
  if (!fault.delay && fault.action == FaultAction::kDelay) {
    fields.Fail(R"(one of "latency", "error" and "status" is needed; DELETE removes the rules)");
  }
  if (fault.statusWord.empty()) return;
  if (!fault.error.empty()) fields.FailAt("status", R"("error" and "status" exclude each other)");
  const std::string refusal = StatusWordFault(rule.pattern);
  if (!refusal.empty()) fields.FailAt("status", refusal);
}

}  // namespace

ControlResult ShowFaults(Platform& platform, const ControlCall&) {
  return platform.faults.ToJson();
}

ControlResult SetFaults(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  std::vector<FaultRule> rules;
  if (fields.ListOr("rules").size() > FaultRules::kMostRules) {
    fields.FailAt("rules", "at most " + std::to_string(FaultRules::kMostRules) + " rules");
  }
  fields.ForEach("rules", [&rules](FieldReader& rule) { rules.push_back(ReadFaultRule(rule)); });
  std::optional<uint64_t> seed;
  if (fields.Find("seed") != nullptr) seed = fields.UnsignedOr("seed", 0);
  const bool keeps = fields.BoolOr("keep", false);
  if (!fields.Finish()) return fields.failure();
  platform.faults.Set(std::move(rules), seed, keeps);
  return platform.faults.ToJson();
}

ControlResult AddFault(Platform& platform, const ControlCall& call) {
  const std::string first = call.target.Parameter("first").value_or("false");
  if (first != "true" && first != "false") return Failure{"first must be true or false", 400};
  FieldReader fields(call.body);
  FaultRule rule = ReadFaultRule(fields);
  if (!fields.Finish()) return fields.failure();
  if (!platform.faults.Add(std::move(rule), first == "true")) return TooManyRules();
  return platform.faults.ToJson();
}

ControlResult RemoveFault(Platform& platform, const ControlCall& call) {
  const std::string& id = call.path.at("id");
  const auto number = ParseNumber(id);
  if (!number || !platform.faults.Remove(*number)) return Failure{"no rule has the id " + id, 404};
  return platform.faults.ToJson();
}

ControlResult RemoveFaults(Platform& platform, const ControlCall&) {
  platform.faults.Clear();
  return platform.faults.ToJson();
}

ControlResult ShowHeld(Platform& platform, const ControlCall&) {
  return platform.proxy.HeldJson();
}

ControlResult EndHeld(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  const Ending ending = ReadEnding(fields);
  if (!fields.Finish()) return fields.failure();
  const std::string& id = call.path.at("id");
  if (!platform.proxy.EndHeld(id, ending)) return Failure{"no call is held under " + id, 404};
  return Json({{"id", ParseJson(id)}, {"action", call.body.root()["action"]}});
}

// A rule by its most frequent form: for one method, and before the others.
ControlResult OverrideService(Platform& platform, const ControlCall& call) {
  const std::string& method = call.path.at("method");
  if (!IsServiceMethod(method)) return UnknownMethod(method);
  FieldReader fields(call.body);
  FaultRule rule;
  rule.pattern = method;
  if (fields.Find("latency") != nullptr) {
    rule.fault.delay = rule.delay.from = rule.delay.to =
        fields.Integer("latency", 0, kLongestDelay);
  }
  rule.fault.error = fields.StringOr("error", "");
  rule.fault.statusWord = fields.StringOr("status", "");
  rule.times = fields.IntegerOr("times", 1, 1, FaultRule::kMostTimes);
  if (!rule.fault.statusWord.empty()) rule.fault.action = FaultAction::kRefuse;
  if (!rule.fault.error.empty()) rule.fault.action = FaultAction::kFail;
  CheckOverride(fields, rule);
  if (!fields.Finish()) return fields.failure();
  const Json json = {{"method", method},
                     {"latency", rule.fault.delay ? Json(*rule.fault.delay) : Json()},
                     {"error", rule.fault.error},
                     {"status", rule.fault.statusWord},
                     {"times", rule.times}};
  if (!platform.faults.PutFirst(std::move(rule))) return TooManyRules();
  return json;
}

ControlResult ResetService(Platform& platform, const ControlCall& call) {
  const std::string& method = call.path.at("method");
  if (!IsServiceMethod(method)) return UnknownMethod(method);
  platform.faults.Remove(FaultTarget::kService, method);
  return Json({{"method", method}});
}

}  // namespace Kest::Host
