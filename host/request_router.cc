#include "host/request_router.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

#include "host/http/http_responses.h"
#include "host/http/request_target.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kPluginPrefix = "/tav-loot/";
constexpr std::string_view kHostPrefix = "/_host/";
constexpr std::string_view kEventsPath = "/_host/events";
constexpr size_t kStreamPieceBytes = size_t{64} * 1024;

constexpr std::string_view kPluginMethods[] = {"DELETE", "GET",  "HEAD", "OPTIONS",
                                               "PATCH",  "POST", "PUT"};
constexpr std::string_view kAllPluginMethods = "DELETE, GET, HEAD, OPTIONS, PATCH, POST, PUT";

bool IsPluginMethod(std::string_view method) {
  return std::find(std::begin(kPluginMethods), std::end(kPluginMethods), method) !=
         std::end(kPluginMethods);
}

// One reader's place in the events. The events themselves stay in the stream.
class EventReader : public HttpStream {
 public:
  EventReader(const EventStream* stream, uint64_t position)
      : stream_(stream), position_(position) {}

  std::string Next() override { return stream_->Read(&position_, kStreamPieceBytes); }

 private:
  const EventStream* const stream_;
  uint64_t position_;
};

}  // namespace

RequestRouter::RequestRouter(Scheduler* scheduler, SessionManager* sessions, HostControl* control,
                             EventStream* stream)
    : scheduler_(scheduler), sessions_(sessions), control_(control), stream_(stream) {}

void RequestRouter::Handle(HttpRequest request, const Respond& respond) {
  const std::string path(RequestTarget::Split(request.target).path);
  if (path.starts_with(kPluginPrefix)) {
    if (!IsPluginMethod(request.method)) return respond(MethodProblem(kAllPluginMethods));
    return RunTask(std::move(request), respond,
                   [this](const HttpRequest& asked) { return AskPlugin(asked); });
  }
  if (path == kEventsPath) return respond(FollowEvents(request));
  if (path.starts_with(kHostPrefix)) {
    return RunTask(std::move(request), respond,
                   [this](const HttpRequest& asked) { return control_->Handle(asked); });
  }
  if (path != "/") return respond(ProblemResponse(404, "Nothing is served at " + path));
  if (request.method != "GET") return respond(MethodProblem("GET"));
  RunTask(std::move(request), respond, [this](const HttpRequest&) { return control_->Index(); });
}

void RequestRouter::RunTask(HttpRequest request, const Respond& respond, Answer answer) {
  std::string name = request.method + " " + request.target;
  auto work = [request = std::move(request), respond, answer = std::move(answer)] {
    HttpResponse result;
    try {
      result = answer(request);
    } catch (const std::bad_alloc&) {
      result = ProblemResponse(500, "Out of memory");
    } catch (const std::exception&) {
      result = ProblemResponse(500, "Internal server error");
    }
    respond(std::move(result));
  };
  const auto posted = scheduler_->Post({.name = std::move(name), .work = std::move(work)});
  if (posted == Scheduler::Posted::kRefused) respond(ProblemResponse(503, "The host is stopping."));
}

HttpResponse RequestRouter::AskPlugin(const HttpRequest& request) {
  PluginSession* const session = sessions_->Current();
  if (session == nullptr) return ProblemResponse(503, "The plugin is not running.");
  return session->Request(request);
}

HttpResponse RequestRouter::FollowEvents(const HttpRequest& request) {
  if (request.method != "GET") return MethodProblem("GET");
  uint64_t position = stream_->Held().last;  // without a place to go on from: what is new
  std::string_view last = request.lastEventId;
  const RequestTarget target = RequestTarget::Split(request.target);
  if (last.empty()) last = target.Parameter("lastEventId").value_or("");
  if (!last.empty()) {
    const auto number = ParseNumber(last);
    if (!number) return ProblemResponse(400, "The last event id must be a number.");
    position = *number;
  }
  HttpResponse answer;
  answer.stream = std::make_unique<EventReader>(stream_, position);
  return answer;
}

}  // namespace Kest::Host
