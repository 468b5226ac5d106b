#include "host/host_control.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "base/ascii.h"
#include "host/controls/with_session.h"
#include "host/http/entity_tag.h"
#include "host/http/http_responses.h"
#include "host/json/json.h"
#include "host/openapi/control_request.h"
#include "host/url/request_target.h"
#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

// The parts of a control's path below "/_host", none for the index; nothing for other paths.
std::optional<std::vector<std::string>> ControlParts(std::string_view path) {
  if (path == "/") return std::vector<std::string>();
  if (!path.starts_with(kControlPrefix)) return std::nullopt;
  path.remove_prefix(kControlPrefix.size());
  if (!path.starts_with('/')) return std::nullopt;
  return PathParts(path);
}

bool Any(std::string_view) {
  return true;
}

// A body without a type, and with the one that curl sends by default, is read as JSON
// too.
bool Takes(const ControlDescription& control, std::string_view type) {
  const auto isIt = [type](std::string_view other) { return EqualIgnoringCase(type, other); };
  constexpr std::string_view kReadAsJson[] = {"", "application/json",
                                              "application/x-www-form-urlencoded"};
  if (std::any_of(std::begin(kReadAsJson), std::end(kReadAsJson), isIt)) return true;
  if (!control.TakesText()) return false;
  for (const auto& [other, schema] : control.body.items()) {
    if (isIt(other)) return true;
  }
  return false;
}

// The types that Takes is about.
std::string TypesOf(const ControlDescription& control) {
  if (!control.TakesText()) return "application/json";
  std::string types;
  for (const auto& [type, schema] : control.body.items()) {
    types.append(types.empty() ? "" : " or ").append(type);
  }
  return types;
}

// What is wrong with the type of a body.
std::optional<std::string> TypeFault(const ControlDescription& control,
                                     std::string_view contentType) {
  if (control.body.is_null()) return std::nullopt;
  if (!Takes(control, TakeTrimmedUpTo(';', &contentType))) {
    return "Send the body as " + TypesOf(control) + ".";
  }
  while (!contentType.empty()) {
    std::string_view value = TakeTrimmedUpTo(';', &contentType);
    if (!EqualIgnoringCase(TakeUpTo('=', &value), "charset")) continue;
    if (!EqualIgnoringCase(value, "utf-8") && !EqualIgnoringCase(value, "\"utf-8\"")) {
      return "Send the body in UTF-8.";
    }
  }
  return std::nullopt;
}

}  // namespace

HostControl::HostControl(const std::vector<ControlGroup>& groups, SessionManager* sessions,
                         Listener changed)
    : sessions_(sessions), changed_(std::move(changed)) {
  for (const ControlGroup& group : groups) {
    for (const HostControlRow& row : group) rows_.emplace(row.operationId, row);
  }
}

bool HostControl::Has(std::string_view path) {
  return ControlParts(path).has_value();
}

bool HostControl::NeedsTask(std::string_view method, std::string_view path) {
  const auto parts = ControlParts(path);
  if (!parts) return false;
  const FoundControl found = FindControl(method, *parts, Any);
  return found.control == nullptr || !found.control->IsStream();
}

HttpResponse HostControl::Handle(const HttpRequest& request) {
  const RequestTarget target = RequestTarget::Split(request.target);
  const auto parts = ControlParts(target.path);
  if (!parts) return ProblemResponse(404, "Nothing is served at " + std::string(target.path));
  FoundControl found = FindControl(request.method, *parts, Any);
  if (!found.methods.empty()) return MethodProblem(found.methods);
  if (found.control == nullptr) {
    return ProblemResponse(404, "There is no control " + std::string(target.path));
  }
  if (!request.body.empty()) {
    const auto fault = TypeFault(*found.control, request.contentType);
    if (fault) return ProblemResponse(415, *fault);
  }
  if (const auto fault = BodyFault(*found.control, request.body)) {
    return ProblemResponse(400, *fault);
  }
  if (const auto fault = QueryFault(found, target)) return ProblemResponse(400, *fault);
  const std::string_view operationId = found.control->operationId;
  HttpResponse response =
      rows_.contains(operationId) ? CallOwn(request, std::move(found)) : AskWorld(request);
  if (!OnlyReads(request.method) && response.status < 400) changed_(operationId);
  return response;
}

HttpResponse HostControl::CallOwn(const HttpRequest& request, FoundControl found) {
  const ControlDescription& control = *found.control;
  const bool isEmpty = control.body.is_null() || control.TakesText() ||
                       (request.body.empty() && !control.TakesAnyBody());
  auto body = Document::FromJson("body", isEmpty ? "{}" : std::string_view(request.body));
  if (!body) return ProblemResponse(400, body.GetFailure().text);
  return rows_.at(control.operationId)
      .call({request, RequestTarget::Split(request.target), std::move(found.arguments),
             std::move(body.GetValue())});
}

HttpResponse HostControl::AskWorld(const HttpRequest& request) {
  const std::string_view url = request.target;
  return WithSession(sessions_, [&](PluginSession& session) {
    return session.Control(request, url.substr(kControlPrefix.size()));
  });
}

}  // namespace Kest::Host
