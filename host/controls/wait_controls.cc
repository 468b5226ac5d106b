#include "host/controls/wait_controls.h"

#include <chrono>
#include <string>
#include <utility>

#include "host/controls/event_condition.h"
#include "host/http/http_responses.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr int64_t kDefaultWait = 30'000;
constexpr int64_t kLongestWait = 600'000;

HttpResponse ReadyPage(Readiness* readiness) {
  const ReadinessReport report = readiness->Look();
  Json checks = Json::array();
  std::string detail = "Not ready.";
  for (const ReadinessReport::Check& check : report.checks) {
    Json& entry = checks.emplace_back(Json{{"name", check.name}, {"ready", check.reason.empty()}});
    if (check.reason.empty()) continue;
    entry["reason"] = check.reason;
    detail += " " + check.reason;
  }
  if (report.Reasons().empty()) {
    return JsonResponse(WriteJson(Json{{"ready", true}, {"checks", std::move(checks)}}));
  }
  HttpResponse problem = ProblemResponse(503, detail);
  problem.body.pop_back();
  problem.body += ",\"checks\":" + WriteJson(checks) + "}";
  return problem;
}

struct WaitRequest {
  std::string path;
  EventCondition condition;
  uint64_t after;
  std::chrono::milliseconds timeout;
};

// The event, once it is there; nothing as long as it is not.
std::optional<HttpResponse> Look(const EventStream* stream, const WaitRequest& wanted,
                                 uint64_t* position) {
  const EventStream::Range held = stream->Held();
  if (*position + 1 < held.first) {
    return ProblemResponse(
        410, "The events up to " + std::to_string(held.first - 1) + " are not held any more.");
  }
  while (const auto event = stream->Find(position, wanted.path)) {
    if (wanted.condition.Holds(event->data)) {
      return JsonResponse("{\"id\":" + std::to_string(event->id) + ",\"event\":" + event->data +
                          "}");
    }
  }
  return std::nullopt;
}

HttpResponse AwaitEvent(const WaitParts& parts, const WaitRequest& wanted) {
  uint64_t position = wanted.after;
  std::optional<HttpResponse> response;
  const bool isThere = parts.scheduler->WatchUntil(wanted.timeout, [&] {
    response = Look(parts.stream, wanted, &position);
    return response.has_value();
  });
  if (isThere) return std::move(*response);
  return ProblemResponse(504, "No such event after " + std::to_string(wanted.timeout.count()) +
                                  " ms; the newest is " + std::to_string(position) + ".");
}

HttpResponse ReadWaitRequest(const WaitParts& parts, const HostCall& call) {
  const uint64_t last = parts.stream->Held().last;
  FieldReader fields(call.body);
  WaitRequest wanted{fields.StringOr("path", ""), EventCondition(fields),
                     fields.UnsignedOr("after", last),
                     std::chrono::milliseconds(
                         fields.IntegerOr("timeoutMilliseconds", kDefaultWait, 0, kLongestWait))};
  if (!wanted.path.empty() && wanted.path.front() != '/') {
    fields.FailAt("path", "a path begins with \"/\", found " + JsonString(wanted.path));
  }
  if (wanted.after > last) {
    fields.FailAt("after", "the newest event is " + std::to_string(last));
  }
  if (!fields.Finish()) return ControlResponse(fields.failure());
  return AwaitEvent(parts, wanted);
}

}  // namespace

ControlGroup WaitControls(const WaitParts& parts) {
  return {{"CheckReadiness", [parts](const HostCall&) { return ReadyPage(parts.readiness); }},
          {"AwaitEvent", [parts](const HostCall& call) { return ReadWaitRequest(parts, call); }}};
}

}  // namespace Kest::Host
