#include "host/request_router.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "base/platform.h"
#include "host/cause/cause.h"
#include "host/http/entity_tag.h"
#include "host/http/http_responses.h"
#include "host/json/json.h"
#include "host/library/methods.h"
#include "host/url/request_target.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kPluginPrefix = "/tav-loot/";
constexpr std::string_view kAllPluginMethods = "DELETE, GET, HEAD, OPTIONS, PATCH, POST, PUT";

bool IsPluginMethod(std::string_view method) {
  return !method.empty() && std::find(std::begin(kMethodNames), std::end(kMethodNames), method) !=
                                std::end(kMethodNames);
}

constexpr std::string_view kTokenPath = "/_host/token";

// The member of a JSON object; empty when it is no string.
std::string StringMember(std::string_view json, const char* name) {
  const Json object = ParseJson(json);
  const bool isThere = object.is_object() && object.contains(name) && object[name].is_string();
  return isThere ? object[name].get<std::string>() : std::string();
}

// What the timeline keeps of a body: all but the token.
std::string KeptBody(Timeline* timeline, const HttpRequest& request) {
  if (RequestTarget::Split(request.target).path != kTokenPath) return request.body;
  const std::string token = StringMember(request.body, "token");
  timeline->Hide(token);
  return token.empty() ? request.body : WriteJson(Json{{"token", TokenMask::kMask}});
}

uint64_t AddRequest(Timeline* timeline, RowKind kind, const HttpRequest& request) {
  return timeline->Add({.kind = kind,
                        .name = request.target,
                        .method = request.method,
                        .payload = KeptBody(timeline, request),
                        .payloadType = request.contentType,
                        .host = request.host,
                        .accept = request.accept});
}

void AddResponse(Timeline* timeline, uint64_t request, const HttpRequest& asked,
                 const HttpResponse& response) {
  timeline->Add({.kind = RowKind::kResponse,
                 .name = asked.target,
                 .method = asked.method,
                 .status = std::to_string(response.status),
                 .summary = response.status < 400 ? "" : StringMember(response.body, "detail"),
                 .payload = response.body,
                 .payloadType = response.contentType,
                 .cause = request,
                 .endsCause = true});
}

}  // namespace

RequestRouter::RequestRouter(Scheduler* scheduler, SessionManager* sessions, HostControl* control,
                             const SiblingPages* siblings, Traffic* traffic, HostLog* log)
    : scheduler_(scheduler),
      sessions_(sessions),
      control_(control),
      siblings_(siblings),
      traffic_(traffic),
      log_(log) {}

std::optional<HttpResponse> RequestRouter::Refuse(const HttpRequest& request) {
  const bool isControl =
      HostControl::NeedsTask(request.method, RequestTarget::Split(request.target).path);
  if (!request.isReserved || isControl) return std::nullopt;
  return TooManyConnections();
}

void RequestRouter::Handle(HttpRequest request, const Respond& respond) {
  if (!log_->settings().requests) return Dispatch(std::move(request), respond);
  auto logged = [log = log_, method = request.method, target = request.target,
                 begin = MonotonicMilliseconds(), respond](HttpResponse response) {
    log->WriteRequest(method, target, response.status, MonotonicMilliseconds() - begin);
    respond(std::move(response));
  };
  Dispatch(std::move(request), logged);
}

void RequestRouter::Dispatch(HttpRequest request, const Respond& respond) {
  const std::string_view path = RequestTarget::Split(request.target).path;
  if (path.starts_with(kPluginPrefix)) {
    if (!IsPluginMethod(request.method)) return respond(MethodProblem(kAllPluginMethods));
    return RunTask(std::move(request), respond,
                   [this](const HttpRequest& asked) { return AskPlugin(asked); });
  }
  if (!HostControl::Has(path)) {
    return RunTask(std::move(request), respond,
                   [this](const HttpRequest& asked) { return AskSibling(asked); });
  }
  if (!HostControl::NeedsTask(request.method, path)) return respond(control_->Handle(request));
  RunTask(std::move(request), respond,
          [this](const HttpRequest& asked) { return AskControl(asked); });
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
  const auto posted =
      scheduler_->Post({.name = std::move(name), .work = std::move(work), .isOutside = true});
  if (posted == Scheduler::Posted::kRefused) respond(ProblemResponse(503, "The host is stopping."));
}

HttpResponse RequestRouter::AskPlugin(const HttpRequest& request) {
  PluginSession* const session = sessions_->Current();
  if (session == nullptr) return ProblemResponse(503, "The plugin is not running.");
  const uint64_t row = AddRequest(&traffic_->Rows(), RowKind::kRequest, request);
  const CauseScope scope(row);
  HttpRequest asked = request;
  // A reader of the head alone means that of the resource, unless the plugin has its own.
  if (asked.method == "HEAD" && !session->Takes(asked.method)) asked.method = "GET";
  HttpResponse response = session->Request(asked);
  ApplyEntityTag(request, &response);
  AddResponse(&traffic_->Rows(), row, request, response);
  response.headers.emplace_back("X-Loot-Host-Row", std::to_string(row));
  if (response.status < 400) return response;
  if (const auto refusal = traffic_->Transactions().RefusalOf(row)) {
    response.headers.emplace_back("X-Loot-Host-Refusal", RefusalHeader(*refusal));
  }
  return response;
}

HttpResponse RequestRouter::AskControl(const HttpRequest& request) {
  if (OnlyReads(request.method)) return control_->Handle(request);
  const uint64_t row = AddRequest(&traffic_->Rows(), RowKind::kControl, request);
  const CauseScope scope(row);
  HttpResponse response = control_->Handle(request);
  AddResponse(&traffic_->Rows(), row, request, response);
  response.headers.emplace_back("X-Loot-Host-Row", std::to_string(row));
  return response;
}

HttpResponse RequestRouter::AskSibling(const HttpRequest& request) {
  HttpResponse response = siblings_->Handle(request);
  ApplyEntityTag(request, &response);
  return response;
}

}  // namespace Kest::Host
