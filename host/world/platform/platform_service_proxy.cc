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

std::optional<WorldResponse> PlatformServiceProxy::Post(std::string_view path,
                                                        std::string_view body) {
  if (path != kInvokePath && path != kUuidPath && path != kMethodPath) return std::nullopt;
  const auto call = ReadCall(body);
  if (!call) return WorldFailure(400, call.GetFailure().text);

  const Reply reply = Run(call.GetValue());
  if (path == kInvokePath) {
    if (reply.result) return WorldJson(WriteJson(reply.result.GetValue()));
    const Failure& failure = reply.result.GetFailure();
    return WorldFailure(failure.status, failure.text);
  }
  if (path == kUuidPath) {
    const std::string id = NewRequestId();
    SendLater("OnServiceProxyUuidEvent", id, call.GetValue(), reply);
    return WorldJson(JsonString(id));
  }
  SendLater("OnServiceProxyMethodEvent", call.GetValue().requestKey, call.GetValue(), reply);
  return WorldResponse{204, "", "", ""};
}

void PlatformServiceProxy::SetOverride(const std::string& method,
                                       std::optional<CallOverride> override) {
  if (override) {
    overrides_[method] = std::move(*override);
  } else {
    overrides_.erase(method);
  }
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

PlatformServiceProxy::Reply PlatformServiceProxy::Run(const ServiceCall& call) {
  ++callCounts_[call.service + "." + call.method];
  const auto latency = data_.latencies.find(call.method);
  Reply reply{Json(), latency == data_.latencies.end() ? data_.latency : latency->second};

  const auto found = overrides_.find(call.method);
  if (found == overrides_.end()) {
    reply.result = Serve(call);
    return reply;
  }
  const CallOverride override = found->second;
  if (--found->second.times == 0) overrides_.erase(found);
  reply.latency = override.latency.value_or(reply.latency);
  if (!override.error.empty()) {
    reply.result = Failure{override.error, 500};
  } else if (!override.status.empty()) {
    reply.result = TransactionJson(Refused(override.status, "set by a control"), data_);
  } else {
    reply.result = Serve(call);
  }
  return reply;
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

void PlatformServiceProxy::SendLater(std::string_view eventName, const std::string& key,
                                     const ServiceCall& call, const Reply& reply) {
  const bool isGood = static_cast<bool>(reply.result);
  const Json payload =
      Json{{"uuid", key},
           {"serviceName", call.service},
           {"methodName", call.method},
           {"payload", isGood ? WriteJson(reply.result.GetValue()) : std::string("null")},
           {"status", isGood ? "OK" : "ERROR"},
           {"error", isGood ? std::string() : reply.result.GetFailure().text}};
  outbox_.push_back({WorldEvent::Channel::kService, std::string(eventName), WriteJson(payload),
                     static_cast<int>(reply.latency)});
  Outstanding();  // forgets those that are over
  outstanding_.push_back({key, call.service + "." + call.method, now_() + reply.latency});
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

bool HasStatusWord(std::string_view method) {
  return method == kCraftMethod || method == kRedeemMethod || method == kNewPlayerChestMethod;
}

}  // namespace Kest::Host
