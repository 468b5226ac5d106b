#include "host/request_router.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "host/http/http_responses.h"
#include "host/http/request_target.h"
#include "host/library/methods.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kPluginPrefix = "/tav-loot/";
constexpr std::string_view kAllPluginMethods = "DELETE, GET, HEAD, OPTIONS, PATCH, POST, PUT";

bool IsPluginMethod(std::string_view method) {
  return !method.empty() && std::find(std::begin(kMethodNames), std::end(kMethodNames), method) !=
                                std::end(kMethodNames);
}

}  // namespace

RequestRouter::RequestRouter(Scheduler* scheduler, SessionManager* sessions, HostControl* control)
    : scheduler_(scheduler), sessions_(sessions), control_(control) {}

std::optional<HttpResponse> RequestRouter::Refuse(const HttpRequest& request) {
  const bool isControl =
      HostControl::NeedsTask(request.method, RequestTarget::Split(request.target).path);
  if (!request.isReserved || isControl) return std::nullopt;
  return TooManyConnections();
}

void RequestRouter::Handle(HttpRequest request, const Respond& respond) {
  const std::string_view path = RequestTarget::Split(request.target).path;
  if (path.starts_with(kPluginPrefix)) {
    if (!IsPluginMethod(request.method)) return respond(MethodProblem(kAllPluginMethods));
    return RunTask(std::move(request), respond,
                   [this](const HttpRequest& asked) { return AskPlugin(asked); });
  }
  if (!HostControl::NeedsTask(request.method, path)) return respond(control_->Handle(request));
  RunTask(std::move(request), respond,
          [this](const HttpRequest& asked) { return control_->Handle(asked); });
}

void RequestRouter::RunTask(HttpRequest request, const Respond& respond, Handler handle) {
  std::string name = request.method + " " + request.target;
  auto work = [request = std::move(request), respond, handle = std::move(handle)] {
    HttpResponse result;
    try {
      result = handle(request);
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

}  // namespace Kest::Host
