#include "host/host_control.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "host/api_pages.h"
#include "host/http/http_responses.h"
#include "host/http/request_target.h"
#include "host/json/json.h"
#include "host/library/c_views.h"
#include "host/library/methods.h"
#include "host/world/controls/controls.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kHostPrefix = "/_host/";
constexpr std::string_view kEventsPath = "/_host/events";
constexpr std::string_view kNotRunning = "The plugin is not running.";
constexpr std::string_view kTimeoutName = "timeoutMilliseconds";
constexpr uint64_t kDefaultIdleTimeout = 30'000;
constexpr uint64_t kLongestIdleTimeout = 600'000;
constexpr size_t kStreamPieceBytes = size_t{64} * 1024;

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
    const KestEndpoint& endpoint = api.endpoints[i];
    endpoints.push_back({{"method", MethodName(endpoint.methodId)},
                         {"path", View(endpoint.pathTemplate)},
                         {"function", View(endpoint.functionName)}});
  }
  return endpoints;
}

// One reader's position in the events. The events themselves stay in the stream.
class EventReader : public HttpStream {
 public:
  EventReader(const EventStream* stream, uint64_t position)
      : stream_(stream), position_(position) {}

  std::string Next() override { return stream_->Read(&position_, kStreamPieceBytes); }

 private:
  const EventStream* const stream_;
  uint64_t position_;
};

// A body without a type, and with the one that curl sends by default, is read as JSON
// too.
bool MayBeJson(std::string_view contentType) {
  const std::string_view type = contentType.substr(0, contentType.find(';'));
  return type.empty() || type == "application/json" || type == "application/x-www-form-urlencoded";
}

}  // namespace

struct HostControl::Row {
  ControlDescription description;
  HttpResponse (HostControl::*handle)(const HttpRequest& request);
};

const HostControl::Row HostControl::kRows[] = {
    {{.method = "GET",
      .path = "/",
      .operationId = "GetHostIndex",
      .summary = "What is served here",
      .response = R"("HostIndex")"},
     &HostControl::Index},
    {{.method = "GET",
      .path = kEventsPath,
      .operationId = "FollowEvents",
      .summary = "Follows what the plugin publishes",
      .parameters = R"({"lastEventId": {"$": "string", "pattern": "^[0-9]+$", "description":)"
                    R"( "The id after which the stream resumes; 0 is the start.)"
                    R"( Without one the stream begins with what is new."},)"
                    R"( "header Last-Event-ID": {"$": "string", "pattern": "^[0-9]+$",)"
                    R"( "description": "The same; takes precedence."}})",
      .response = R"({"text/event-stream": {"$": ["EventStreamMessage"],)"
                  R"( "description": "Server-sent events without end."}})"},
     &HostControl::FollowEvents},
    {{.method = "GET",
      .path = "/_host/health",
      .operationId = "GetHealth",
      .summary = "What the host and the plugin are doing",
      .response = R"("HostHealth")"},
     &HostControl::Health},
    {{.method = "GET",
      .path = "/_host/help",
      .operationId = "GetHelp",
      .summary = "Describes the functions, types and events of the plugin",
      .parameters = R"({"format": {"$": "=Full|Epytext", "description": "Full when absent"}})",
      .response = R"({"application/json": "BindingFullApiHelp",)"
                  R"( "text/plain; charset=utf-8": "string"})"},
     &HostControl::Help},
    {{.method = "GET",
      .path = "/_host/openapi.json",
      .operationId = "GetOpenApi",
      .summary = "This document",
      .response = R"("object")"},
     &HostControl::OpenApi},
    {{.method = "POST",
      .path = "/_host/idle",
      .operationId = "AwaitIdle",
      .summary = "Waits until nothing is left to do",
      .parameters = R"({"timeoutMilliseconds": {"$": "int32 0..600000", "default": 30000}})",
      .response = R"({"idle": {"$": "boolean", "const": true}})"},
     &HostControl::Idle},
    {{.method = "POST",
      .path = "/_host/reset",
      .operationId = "Reset",
      .summary = "Starts the world and the plugin from scratch",
      .response = R"({"reset": {"$": "boolean", "const": true}})"},
     &HostControl::Reset},
    {{.method = "GET",
      .path = "/_host/log",
      .operationId = "GetLog",
      .summary = "The newest lines of the plugin's log, oldest first",
      .response = R"(["string"])"},
     &HostControl::Log},
};

std::vector<ControlDescription> HostControl::AllControls() {
  std::vector<ControlDescription> controls;
  for (const Row& row : kRows) controls.push_back(row.description);
  const std::vector<ControlDescription> ofWorld = WorldControls();
  controls.insert(controls.end(), ofWorld.begin(), ofWorld.end());
  return controls;
}

bool HostControl::NeedsTask(std::string_view path) {
  return path == "/" || (path.starts_with(kHostPrefix) && path != kEventsPath);
}

HostControl::HostControl(Scheduler* scheduler, ServiceEventThread* serviceEvents,
                         EventStream* stream, SessionManager* sessions, const HostLog* log)
    : scheduler_(scheduler),
      serviceEvents_(serviceEvents),
      stream_(stream),
      sessions_(sessions),
      log_(log) {}

HttpResponse HostControl::Handle(const HttpRequest& request) {
  const std::string_view path = RequestTarget::Split(request.target).path;
  for (const Row& row : kRows) {
    if (row.description.path != path) continue;
    if (row.description.method != request.method) return MethodProblem(row.description.method);
    return (this->*row.handle)(request);
  }
  if (path.starts_with(kHostPrefix)) return AskWorld(request);
  return ProblemResponse(404, std::string("Nothing is served at ").append(path));
}

HttpResponse HostControl::AskWorld(const HttpRequest& request) {
  if (!request.body.empty() && !MayBeJson(request.contentType)) {
    return ProblemResponse(415, "Send the body as application/json.");
  }
  const std::string_view path = RequestTarget::Split(request.target).path;
  return WithSession([&](PluginSession& session) {
    return session.Control(request, path.substr(kControlPrefix.size()));
  });
}

template <typename Handler>
HttpResponse HostControl::WithSession(Handler handle) {
  PluginSession* const session = sessions_->Current();
  return session != nullptr ? handle(*session) : ProblemResponse(503, kNotRunning);
}

HttpResponse HostControl::FollowEvents(const HttpRequest& request) {
  uint64_t position = stream_->Held().last;  // without a position to resume from: what is new
  std::string_view last = request.lastEventId;
  const RequestTarget target = RequestTarget::Split(request.target);
  if (last.empty()) last = target.Parameter("lastEventId").value_or("");
  if (!last.empty()) {
    const auto number = ParseNumber(last);
    if (!number) return ProblemResponse(400, "The last event id must be a number.");
    position = *number;
  }
  HttpResponse response;
  response.stream = std::make_unique<EventReader>(stream_, position);
  return response;
}

HttpResponse HostControl::Health(const HttpRequest&) {
  PluginSession* const session = sessions_->Current();
  const EventStream::Range held = stream_->Held();
  Json health = {{"status", session != nullptr ? "running" : "stopped"},
                 {"tasks", TasksJson(scheduler_->Describe())},
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

HttpResponse HostControl::Idle(const HttpRequest& request) {
  uint64_t limit = kDefaultIdleTimeout;
  if (const auto text = RequestTarget::Split(request.target).Parameter(kTimeoutName)) {
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

HttpResponse HostControl::Reset(const HttpRequest&) {
  const auto done = sessions_->Reset();
  return done ? JsonResponse(R"({"reset":true})") : ProblemResponse(500, done.GetFailure().text);
}

HttpResponse HostControl::Log(const HttpRequest&) {
  return JsonResponse(WriteJson(log_->Kept()));
}

HttpResponse HostControl::Help(const HttpRequest& request) {
  const std::string_view query = RequestTarget::Split(request.target).query;
  return WithSession([&](PluginSession& session) { return HelpPage(session, query); });
}

HttpResponse HostControl::OpenApi(const HttpRequest&) {
  return WithSession([](PluginSession& session) { return OpenApiPage(session, AllControls()); });
}

HttpResponse HostControl::Index(const HttpRequest&) {
  return WithSession([](PluginSession& session) {
    return JsonResponse(WriteJson(Json{{"plugin", session.FullName()},
                                       {"version", session.Version()},
                                       {"events", kEventsPath},
                                       {"health", "/_host/health"},
                                       {"help", "/_host/help"},
                                       {"openapi", "/_host/openapi.json"},
                                       {"endpoints", EndpointsJson(session.Api())}}));
  });
}

}  // namespace Kest::Host
