#include "host/controls/session_controls.h"

#include <chrono>
#include <string>
#include <utility>

#include "host/console/console_files.h"
#include "host/controls/query_reader.h"
#include "host/controls/with_session.h"
#include "host/http/http_responses.h"
#include "host/http/media_ranges.h"
#include "host/json/json.h"
#include "host/library/methods.h"
#include "plugin/text_view.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kDefaultIdleTimeout = 30'000;
constexpr uint64_t kLongestIdleTimeout = 600'000;

uint64_t Joined(const uint32_t (&halves)[2]) {
  return halves[0] | uint64_t{halves[1]} << 32;
}

Json StatisticsJson(const KestStatistics& statistics) {
  return {{"requestsHandled", Joined(statistics.requestsHandled)},
          {"requestsFailed", Joined(statistics.requestsFailed)},
          {"eventsReceived", Joined(statistics.eventsReceived)},
          {"eventsPublished", Joined(statistics.eventsPublished)},
          {"warningsLogged", Joined(statistics.warningsLogged)},
          {"errorsLogged", Joined(statistics.errorsLogged)}};
}

Json TasksJson(const Scheduler::Report& report) {
  Json running = Json::array();
  for (const Scheduler::TaskReport& task : report.running) {
    Json& entry = running.emplace_back(Json{{"name", task.name}});
    if (!task.waitLabel.empty()) entry["waitsFor"] = task.waitLabel;
  }
  return {{"queued", report.queued}, {"delayed", report.delayed}, {"running", std::move(running)}};
}

Json EndpointsJson(const KestApiDescriptor& api) {
  Json endpoints = Json::array();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
    endpoints.push_back({{"method", MethodName(endpoint.methodId)},
                         {"path", ToView(endpoint.pathTemplate)},
                         {"function", ToView(endpoint.functionName)}});
  }
  return endpoints;
}

HttpResponse PluginIndex(PluginSession& session) {
  HttpResponse response =
      JsonResponse(WriteJson(Json{{"plugin", session.FullName()},
                                  {"version", session.Version()},
                                  {"events", "/_host/events"},
                                  {"health", "/_host/health"},
                                  {"help", "/_host/help"},
                                  {"openapi", "/_host/openapi.json"},
                                  {"endpoints", EndpointsJson(session.Api())}}));
  response.variesByAccept = true;
  return response;
}

// Browsers name HTML, programs take what comes. The console is there without a plugin, too.
HttpResponse Index(SessionManager* sessions, const HostCall& call) {
  if (Prefers(call.request.accept, "text/html", "application/json"))
    return ConsolePage(call.request);
  return WithSession(sessions, PluginIndex);
}

HttpResponse Health(const SessionParts& parts) {
  PluginSession* const session = parts.sessions->Current();
  const EventStream::Range held = parts.stream->Held();
  Json health = {{"status", session != nullptr ? "running" : "stopped"},
                 {"tasks", TasksJson(parts.scheduler->Describe())},
                 {"events", {{"first", held.first}, {"last", held.last}}}};
  if (session != nullptr) {
    health["plugin"] = session->FullName();
    health["version"] = session->Version();
    health["userAgent"] = session->Services().UserAgent();
    health["subscriptions"] = session->Services().SubscribedNames();
    health["statistics"] = StatisticsJson(session->Statistics());
  }
  return JsonResponse(WriteJson(health));
}

HttpResponse Idle(const SessionParts& parts, const HostCall& call) {
  QueryReader query(call.target);
  const uint64_t limit =
      query.Number("timeoutMilliseconds", 0, kLongestIdleTimeout).value_or(kDefaultIdleTimeout);
  if (query.failure()) return ControlResponse(*query.failure());
  const auto waitsForTime = [&parts] {
    return parts.scheduler->NextDue() || parts.serviceEvents->NextDue();
  };
  const bool quiet = parts.scheduler->WaitUntilQuiet(
      std::chrono::milliseconds(limit), [&parts] { return parts.serviceEvents->Quiet(); },
      waitsForTime);
  if (quiet) return JsonResponse(R"({"idle":true})");
  if (parts.clock->IsFrozen() && waitsForTime()) {
    return ProblemResponse(504,
                           "What is left waits for the clock, which is frozen; "
                           "POST /_host/clock/advance lets time pass.");
  }
  return ProblemResponse(504, "Still busy after " + std::to_string(limit) + " ms.");
}

}  // namespace

ControlGroup SessionControls(const SessionParts& parts) {
  return {
      {"GetHostIndex", [parts](const HostCall& call) { return Index(parts.sessions, call); }},
      {"GetHealth", [parts](const HostCall&) { return Health(parts); }},
      {"AwaitIdle", [parts](const HostCall& call) { return Idle(parts, call); }},
  };
}

}  // namespace Kest::Host
