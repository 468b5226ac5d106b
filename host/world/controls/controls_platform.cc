#include <algorithm>

#include "host/world/controls/control_call.h"
#include "host/world/data/platform_constants.h"
#include "host/world/file/world_sections.h"

namespace Kest::Host {
namespace {

// The message a body names or spells out.
PreparedMessage ReadMessage(FieldReader& fields, IssueReport& report, const WorldData& data) {
  PreparedMessage message;
  if (const JsonValue* name = fields.Find("name")) {
    const auto prepared = data.messages.find(fields.TextOr("name", ""));
    if (prepared != data.messages.end()) return prepared->second;
    report.Add(name->position(), "this world has no message " + WriteJson(*name));
    return message;
  }
  message.clientId = fields.TextOr("clientId", "");
  message.subtopic = fields.TextOr("subtopic", kDialogMessageSubtopic);
  message.typeName = fields.TextOr("typeName", kMasteryGrantType);
  if (const JsonValue* body = fields.Find("body")) message.body = *body;
  return message;
}

bool IsPlainName(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

Failure UnknownMethod(const std::string& method) {
  return Failure{"the platform has no service method " + method, 404};
}

bool IsServiceMethod(const std::string& method) {
  return std::find(kServiceMethods.begin(), kServiceMethods.end(), method) != kServiceMethods.end();
}

}  // namespace

ControlResult SetConfiguration(Platform& platform, const ControlCall& call) {
  if (!IsPlainName(call.parts[1])) {
    return Failure{"the name of a configuration value is made of letters and digits", 400};
  }
  platform.session.SetConfiguration(call.parts[1], call.body);
  return JsonValue(JsonValue::Object{{"name", call.parts[1]}, {"value", call.body}});
}

ControlResult RemoveConfiguration(Platform& platform, const ControlCall& call) {
  if (!platform.session.RemoveConfiguration(call.parts[1])) {
    return Failure{"there is no configuration value " + call.parts[1], 404};
  }
  return JsonValue(JsonValue::Object{{"name", call.parts[1]}});
}

ControlResult PushMessage(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  PreparedMessage message = ReadMessage(fields, report, platform.data);
  const std::string as = fields.TextOr("as", "object");
  if (as != "object" && as != "text") {
    report.Add(fields.Place("as"), "\"as\" is \"object\" or \"text\"");
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  if (as == "text") message.body = WriteJson(message.body);
  JsonValue event = JsonValue::Object{{"clientId", message.clientId},
                                      {"subtopic", message.subtopic},
                                      {"typeName", message.typeName},
                                      {"body", message.body}};
  platform.outbox.push_back(
      {WorldEvent::Channel::kService, "OnSvdsEvent_" + message.subtopic, WriteJson(event), 0});
  return event;
}

ControlResult SetLoginPacket(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  std::vector<LoginMessage> messages;
  JsonValue::Array ids;
  for (const JsonValue& value : fields.ListOr("simpleMessages")) {
    messages.push_back(ReadLoginMessage(value, report));
    ids.push_back(messages.back().msgId);
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.session.SetLoginMessages(std::move(messages));
  return JsonValue(JsonValue::Object{{"messages", std::move(ids)}});
}

ControlResult SetToken(Platform& platform, const ControlCall& call) {
  IssueReport report;
  FieldReader fields(call.body, report);
  TokenOverride override;
  const JsonValue* value = fields.Find("token");
  if (value == nullptr) {
    report.Add(call.body.position(), "member \"token\" is missing");
  } else if (!value->IsNull()) {
    override.token = fields.TextOr("token", "");
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.tokenOverride = override;
  return JsonValue(JsonValue::Object{{"token", *value}});
}

ControlResult ResetToken(Platform& platform, const ControlCall&) {
  platform.tokenOverride.reset();
  return JsonValue(JsonValue::Object());
}

ControlResult OverrideService(Platform& platform, const ControlCall& call) {
  const std::string& method = call.parts[1];
  if (!IsServiceMethod(method)) return UnknownMethod(method);
  constexpr int64_t kMaxLatency = 600'000;
  IssueReport report;
  FieldReader fields(call.body, report);
  CallOverride override;
  if (fields.Find("latency") != nullptr) override.latency = fields.Whole("latency", 0, kMaxLatency);
  override.error = fields.TextOr("error", "");
  override.status = fields.TextOr("status", "");
  override.times = fields.WholeOr("times", 1, 1, 1'000'000);
  if (!override.status.empty() && !HasStatusWord(method)) {
    report.Add(fields.Place("status"), "the result of " + method + " has no status word");
  }
  fields.Finish();
  if (report.failed()) return BadBody(report);
  platform.proxy.SetOverride(method, override);
  return JsonValue(
      JsonValue::Object{{"method", method},
                        {"latency", override.latency ? JsonValue(*override.latency) : JsonValue()},
                        {"error", override.error},
                        {"status", override.status},
                        {"times", override.times}});
}

ControlResult ResetService(Platform& platform, const ControlCall& call) {
  const std::string& method = call.parts[1];
  if (!IsServiceMethod(method)) return UnknownMethod(method);
  platform.proxy.SetOverride(method, std::nullopt);
  return JsonValue(JsonValue::Object{{"method", method}});
}

}  // namespace Kest::Host
