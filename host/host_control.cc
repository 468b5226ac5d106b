#include "host/host_control.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "host/api_pages.h"
#include "host/http/http_responses.h"
#include "host/http/json_text.h"
#include "host/http/request_target.h"
#include "host/library/c_views.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kPrefix = "/_host";
constexpr std::string_view kNotRunning = "The plugin is not running.";
constexpr std::string_view kTimeoutName = "timeoutMilliseconds";
constexpr uint64_t kDefaultIdleTimeout = 30'000;
constexpr uint64_t kLongestIdleTimeout = 600'000;

// By method id.
constexpr std::string_view kMethodNames[] = {"",        "DELETE", "GET",  "HEAD",
                                             "OPTIONS", "PATCH",  "POST", "PUT"};

uint64_t Joined(const uint32_t (&halves)[2]) {
  return halves[0] | uint64_t{halves[1]} << 32;
}

void WriteStatistics(const KestStatistics& statistics, JsonWriter* json) {
  json->Key("statistics").BeginObject();
  json->Key("requestsAnswered").Number(Joined(statistics.requestsAnswered));
  json->Key("requestsFailed").Number(Joined(statistics.requestsFailed));
  json->Key("eventsReceived").Number(Joined(statistics.eventsReceived));
  json->Key("eventsPublished").Number(Joined(statistics.eventsPublished));
  json->Key("warningsLogged").Number(Joined(statistics.warningsLogged));
  json->Key("errorsLogged").Number(Joined(statistics.errorsLogged));
  json->EndObject();
}

void WriteTasks(const Scheduler::Report& report, JsonWriter* json) {
  json->Key("tasks").BeginObject();
  json->Key("queued").Number(uint64_t{report.queued});
  json->Key("delayed").Number(uint64_t{report.delayed});
  json->Key("running").BeginArray();
  for (const Scheduler::TaskReport& task : report.running) {
    json->BeginObject().Key("name").Text(task.name);
    if (!task.waitLabel.empty()) json->Key("waitsFor").Text(task.waitLabel);
    json->EndObject();
  }
  json->EndArray().EndObject();
}

void WriteEndpoints(const KestApiDescriptor& api, JsonWriter* json) {
  json->Key("endpoints").BeginArray();
  for (size_t i = 0; i < api.endpointCount; ++i) {
    const KestEndpoint& endpoint = api.endpoints[i];
    const bool known =
        endpoint.methodId > 0 && static_cast<size_t>(endpoint.methodId) < std::size(kMethodNames);
    json->BeginObject();
    json->Key("method").Text(kMethodNames[known ? endpoint.methodId : 0]);
    json->Key("path").Text(View(endpoint.pathTemplate));
    json->Key("function").Text(View(endpoint.functionName)).EndObject();
  }
  json->EndArray();
}

// A body without a type, and with the one that curl sends unless told otherwise, is read as JSON
// too.
bool MayBeJson(std::string_view contentType) {
  const std::string_view type = contentType.substr(0, contentType.find(';'));
  return type.empty() || type == "application/json" || type == "application/x-www-form-urlencoded";
}

}  // namespace

struct HostControl::Endpoint {
  std::string_view path;
  std::string_view method;
  HttpResponse (HostControl::*answer)(std::string_view query);
};

const HostControl::Endpoint HostControl::kEndpoints[] = {
    {"/_host/health", "GET", &HostControl::Health},
    {"/_host/idle", "POST", &HostControl::Idle},
    {"/_host/reset", "POST", &HostControl::Reset},
    {"/_host/log", "GET", &HostControl::Log},
    {"/_host/help", "GET", &HostControl::Help},
    {"/_host/openapi.json", "GET", &HostControl::OpenApi},
};

HostControl::HostControl(Scheduler* scheduler, ServiceEventThread* serviceEvents,
                         EventStream* stream, SessionManager* sessions, const HostLog* log)
    : scheduler_(scheduler),
      serviceEvents_(serviceEvents),
      stream_(stream),
      sessions_(sessions),
      log_(log) {}

HttpResponse HostControl::Handle(const HttpRequest& request) {
  const RequestTarget target = RequestTarget::Split(request.target);
  for (const Endpoint& endpoint : kEndpoints) {
    if (endpoint.path != target.path) continue;
    if (endpoint.method != request.method) return MethodProblem(endpoint.method);
    return (this->*endpoint.answer)(target.query);
  }
  return AskWorld(request, target.path.substr(kPrefix.size()));
}

HttpResponse HostControl::AskWorld(const HttpRequest& request, std::string_view path) {
  if (!request.body.empty() && !MayBeJson(request.contentType)) {
    return ProblemResponse(415, "Send the body as application/json.");
  }
  PluginSession* const session = sessions_->Current();
  return session != nullptr ? session->Control(request, path) : ProblemResponse(503, kNotRunning);
}

HttpResponse HostControl::Health(std::string_view) {
  PluginSession* const session = sessions_->Current();
  const EventStream::Range held = stream_->Held();
  JsonWriter json;
  json.BeginObject().Key("status").Text(session != nullptr ? "running" : "stopped");
  WriteTasks(scheduler_->Describe(), &json);
  json.Key("events").BeginObject().Key("first").Number(held.first);
  json.Key("last").Number(held.last).EndObject();
  if (session != nullptr) {
    json.Key("plugin").Text(session->FullName()).Key("version").Text(session->Version());
    json.Key("userAgent").Text(session->Services().UserAgent());
    json.Key("subscriptions").BeginArray();
    for (const std::string& name : session->Services().SubscribedNames()) json.Text(name);
    json.EndArray();
    WriteStatistics(session->Statistics(), &json);
  }
  return JsonResponse(json.EndObject().Take());
}

HttpResponse HostControl::Idle(std::string_view query) {
  uint64_t limit = kDefaultIdleTimeout;
  if (const auto text = RequestTarget{{}, query}.Parameter(kTimeoutName)) {
    const auto number = ParseNumber(*text);
    if (!number || *number > kLongestIdleTimeout) {
      return ProblemResponse(400, std::string(kTimeoutName) + " must be a number up to " +
                                      std::to_string(kLongestIdleTimeout) + ".");
    }
    limit = *number;
  }
  const bool quiet = scheduler_->WaitUntilQuiet(std::chrono::milliseconds(limit),
                                                [this] { return serviceEvents_->Quiet(); });
  if (quiet) return JsonResponse(R"({"idle":true})");
  return ProblemResponse(504, "Still busy after " + std::to_string(limit) + " ms.");
}

HttpResponse HostControl::Reset(std::string_view) {
  const auto done = sessions_->Reset();
  return done ? JsonResponse(R"({"reset":true})") : ProblemResponse(500, done.GetFailure().text);
}

HttpResponse HostControl::Log(std::string_view) {
  JsonWriter json;
  json.BeginArray();
  for (const std::string& line : log_->Kept()) json.Text(line);
  return JsonResponse(json.EndArray().Take());
}

HttpResponse HostControl::Help(std::string_view query) {
  PluginSession* const session = sessions_->Current();
  return session != nullptr ? HelpPage(*session, query) : ProblemResponse(503, kNotRunning);
}

HttpResponse HostControl::OpenApi(std::string_view) {
  PluginSession* const session = sessions_->Current();
  return session != nullptr ? OpenApiPage(*session) : ProblemResponse(503, kNotRunning);
}

HttpResponse HostControl::Index() {
  PluginSession* const session = sessions_->Current();
  if (session == nullptr) return ProblemResponse(503, kNotRunning);
  JsonWriter json;
  json.BeginObject().Key("plugin").Text(session->FullName());
  json.Key("version").Text(session->Version());
  json.Key("events").Text("/_host/events").Key("health").Text("/_host/health");
  json.Key("help").Text("/_host/help").Key("openapi").Text("/_host/openapi.json");
  WriteEndpoints(session->Api(), &json);
  return JsonResponse(json.EndObject().Take());
}

}  // namespace Kest::Host
