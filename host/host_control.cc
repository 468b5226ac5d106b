#include "host/host_control.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>
#include <utility>

#include "host/api_pages.h"
#include "host/http/http_responses.h"
#include "host/http/request_target.h"
#include "host/json/json.h"
#include "host/json/json_text.h"
#include "host/library/c_views.h"
#include "host/library/methods.h"
#include "host/openapi/control_description.h"

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
    const KestEndpoint& endpoint = *KestEndpointAt(&api, i);
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

// A misspelt parameter would otherwise be one that is not there.
std::optional<HttpResponse> RefuseUnknown(const HttpRequest& request, const Json& parameters) {
  const auto unknown =
      RequestTarget::Split(request.target).UnknownParameter([&parameters](std::string_view name) {
        return parameters.contains(name);
      });
  if (!unknown) return std::nullopt;
  std::string known;
  for (const auto& [name, schema] : parameters.items()) {
    if (name.find(' ') == std::string::npos) known += (known.empty() ? "" : ", ") + name;
  }
  return ProblemResponse(400, "Unknown query parameter " + JsonString(*unknown) +
                                  "; known here: " + (known.empty() ? "none" : known) + ".");
}

}  // namespace

const HostControl::Row HostControl::kRows[] = {
    {"GetHostIndex", &HostControl::Index}, {"FollowEvents", &HostControl::FollowEvents},
    {"GetHealth", &HostControl::Health},   {"GetHelp", &HostControl::Help},
    {"GetOpenApi", &HostControl::OpenApi}, {"AwaitIdle", &HostControl::Idle},
    {"Reset", &HostControl::Reset},        {"GetLog", &HostControl::Log},
};

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
  for (const ControlDescription& control : AllControls()) {
    if (control.path != path) continue;
    const auto* const row = std::find_if(
        std::begin(kRows), std::end(kRows),
        [&control](const Row& candidate) { return candidate.operationId == control.operationId; });
    if (row == std::end(kRows)) break;
    if (control.method != request.method) return MethodProblem(control.method);
    if (auto refusal = RefuseUnknown(request, control.parameters)) return std::move(*refusal);
    return (this->*row->handle)(request);
  }
  if (path.starts_with(kHostPrefix)) return AskWorld(request);
  return ProblemResponse(404, std::string("Nothing is served at ").append(path));
}

HttpResponse HostControl::AskWorld(const HttpRequest& request) {
  if (!request.body.empty() && !MayBeJson(request.contentType)) {
    return ProblemResponse(415, "Send the body as application/json.");
  }
  if (auto refusal = RefuseUnknown(request, Json::object())) return std::move(*refusal);
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
  return WithSession([](PluginSession& session) { return OpenApiPage(session); });
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
