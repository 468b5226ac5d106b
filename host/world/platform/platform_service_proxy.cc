#include "host/world/platform/platform_service_proxy.h"

#include <algorithm>

#include "host/json/json_text.h"
#include "host/world/data/platform_constants.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kInvokePath = "/tav-login/v1/session/invoke";
constexpr std::string_view kUuidPath = "/tav-login/v1/service-proxy-uuid-requests";
constexpr std::string_view kMethodPath = "/tav-login/v1/service-proxy-method-requests";
constexpr size_t kMaxAcknowledgements = 1000;

}  // namespace

std::optional<PlatformServiceProxy::Way> PlatformServiceProxy::WayOf(std::string_view path) {
  if (path == kInvokePath) return Way::kResponse;
  if (path == kUuidPath) return Way::kUuidEvent;
  if (path == kMethodPath) return Way::kMethodEvent;
  return std::nullopt;
}

std::optional<WorldResponse> PlatformServiceProxy::Post(std::string_view path,
                                                        std::string_view body) {
  const auto way = WayOf(path);
  if (!way) return std::nullopt;
  auto read = ReadCall(body);
  if (!read) return WorldFailure(400, read.GetFailure().text);

  ServiceCall& call = read.GetValue();
  call.way = *way;
  if (call.way == Way::kUuidEvent) call.requestKey = NewRequestId();
  ++callCounts_[call.service + "." + call.method];
  const CallFault fault = faults_.Next(FaultTarget::kService, call.method).value_or(CallFault{});
  if (fault.action == FaultAction::kHold && held_.size() < kMostHeld) return Hold(call, body);

  const Maybe<Json> result = Run(call, fault);
  WorldResponse response;
  if (call.way == Way::kResponse) {
    response = ResultResponse(result);
    response.delayMilliseconds = static_cast<int>(fault.delay.value_or(0));
    response.isLost = fault.action == FaultAction::kDrop;
    return response;
  }
  response = Accepted(call);
  const bool isEarly = fault.action == FaultAction::kEarly;
  if (isEarly) response.delayMilliseconds = static_cast<int>(fault.delay.value_or(0));
  SendEvent(call, result, isEarly ? 0 : fault.delay.value_or(LatencyOf(call.method)), fault,
            CurrentCause());
  return response;
}

WorldResponse PlatformServiceProxy::Accepted(const ServiceCall& call) {
  if (call.way == Way::kUuidEvent) return WorldJson(JsonString(call.requestKey));
  return WorldResponse{.status = 204, .contentType = {}, .body = {}, .message = {}};
}

WorldResponse PlatformServiceProxy::ResultResponse(const Maybe<Json>& result) {
  if (result) return WorldJson(WriteJson(result.GetValue()));
  return WorldFailure(result.GetFailure().status, result.GetFailure().text);
}

WorldResponse PlatformServiceProxy::Hold(const ServiceCall& call, std::string_view body) {
  held_[++lastHeld_] = {call.way, call.requestKey, std::string(body), CurrentCause()};
  WorldResponse response = Accepted(call);
  if (call.way == Way::kResponse) response.heldAs = lastHeld_;
  return response;
}

Json PlatformServiceProxy::HeldJson() const {
  Json list = Json::array();
  for (const auto& [id, held] : held_) {
    const auto call = ReadCall(held.body);
    list.push_back(Json{{"id", id},
                        {"service", call.GetValue().service},
                        {"method", call.GetValue().method},
                        {"key", held.key},
                        {"arguments", *call.GetValue().arguments}});
  }
  return list;
}

bool PlatformServiceProxy::EndHeld(std::string_view id, const Ending& ending) {
  const auto found = std::find_if(held_.begin(), held_.end(), [id](const auto& entry) {
    return std::to_string(entry.first) == id;
  });
  if (found == held_.end()) return false;
  const auto [number, held] = std::move(*found);
  held_.erase(found);

  auto read = ReadCall(held.body);  // could be read when it came
  ServiceCall& call = read.GetValue();
  call.way = held.way;
  call.requestKey = held.key;
  Maybe<Json> result = ending.result;
  if (ending.kind == Ending::Kind::kRelease) result = Serve(call);
  if (ending.kind == Ending::Kind::kFail) result = Failure{ending.error, 500};
  if (call.way == Way::kResponse) {
    released_.push_back({number, ResultResponse(result)});
  } else {
    SendEvent(call, result, 0, CallFault{}, held.cause);
  }
  return true;
}

std::vector<PlatformServiceProxy::OutstandingCall> PlatformServiceProxy::Outstanding() {
  const int64_t now = now_();
  std::erase_if(outstanding_, [&](const OutstandingCall& call) { return call.due <= now; });
  return outstanding_;
}

Maybe<PlatformServiceProxy::ServiceCall> PlatformServiceProxy::ReadCall(std::string_view body) {
  auto document = Document::FromJson("body", body);
  if (!document) return document.GetFailure();
  ServiceCall call{std::move(document.GetValue()), {}, {}, {}, nullptr};
  FieldReader fields(call.body);
  call.service = fields.String("serviceName");
  call.method = fields.String("methodName");
  call.requestKey = fields.StringOr("requestKey", "");
  call.arguments = &fields.ListOr("args");
  if (!fields.ok()) return fields.failure();
  return call;
}

int64_t PlatformServiceProxy::LatencyOf(const std::string& method) const {
  const auto found = data_.latencies.find(method);
  return found == data_.latencies.end() ? data_.latency : found->second;
}

Maybe<Json> PlatformServiceProxy::Run(const ServiceCall& call, const CallFault& fault) {
  if (fault.action == FaultAction::kFail) return Failure{fault.error, 500};
  if (fault.action == FaultAction::kRefuse) {
    return TransactionJson(Refused(fault.statusWord, "set by a control"), data_);
  }
  Maybe<Json> result = Serve(call);
  if (fault.action == FaultAction::kGarble) return fault.payload;
  return result;
}

Maybe<Json> PlatformServiceProxy::Serve(const ServiceCall& call) {
  if (call.service != kLootService && call.service != kClientFacadeService) {
    return Failure{"there is no service " + call.service, 404};
  }
  if (!session_.ids()) return Failure{"no player is signed in", 500};
  if (call.service == kLootService) {
    Maybe<Json> result = loot_.Call(call.method, *call.arguments);
    // Before the response, so that a redeemed thing is known as owned when the response arrives.
    session_.PublishCollections();
    return result;
  }
  if (call.method == kAcknowledgeMethod) return Acknowledge(call);
  return Failure{"service " + call.service + " has no method " + call.method, 404};
}

Maybe<Json> PlatformServiceProxy::Acknowledge(const ServiceCall& call) {
  if (call.arguments->size() != 1) return Failure{"expected one dialog message response", 400};
  FieldReader body(call.body);
  FieldReader fields((*call.arguments)[0], body);
  fields.UnsignedOr("accountId", 0);
  const std::string msgId = fields.String("msgId");
  const std::string command = fields.String("command");
  if (!fields.ok()) return fields.failure();
  if (command != "ack") return Failure{"unknown command " + command, 400};
  session_.Acknowledge(msgId);
  acknowledgements_.push_back(fields.Values());
  if (acknowledgements_.size() > kMaxAcknowledgements) acknowledgements_.pop_front();
  return Json();
}

void PlatformServiceProxy::SendEvent(const ServiceCall& call, const Maybe<Json>& result,
                                     int64_t latency, const CallFault& fault, uint64_t cause) {
  if (fault.action == FaultAction::kDrop) return;
  const bool isGood = static_cast<bool>(result);
  const bool hasKnownId = fault.action != FaultAction::kUnknownId;
  const Json payload = Json{{"uuid", hasKnownId ? call.requestKey : NewRequestId()},
                            {"serviceName", call.service},
                            {"methodName", call.method},
                            {"payload", isGood ? WriteJson(result.GetValue()) : "null"},
                            {"status", isGood ? "OK" : "ERROR"},
                            {"error", isGood ? std::string() : result.GetFailure().text}};
  const bool isUuid = call.way == Way::kUuidEvent;
  WorldEvent event = {WorldEvent::Channel::kService,
                      isUuid ? "OnServiceProxyUuidEvent" : "OnServiceProxyMethodEvent",
                      WriteJson(payload),
                      static_cast<int>(latency),
                      fault.action == FaultAction::kEarly,
                      cause};
  if (fault.action == FaultAction::kDouble) outbox_.push_back(event);
  outbox_.push_back(std::move(event));
  Outstanding();  // forgets those that are over
  outstanding_.push_back({call.requestKey, call.service + "." + call.method, now_() + latency});
}

std::string PlatformServiceProxy::NewRequestId() {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string id;
  for (const int group : {8, 4, 4, 4, 12}) {
    if (!id.empty()) id += '-';
    uint64_t bits = ids_.Bits();
    for (int i = 0; i < group; ++i, bits >>= 4) id += kHex[bits & 15];
  }
  return id;
}

}  // namespace Kest::Host
