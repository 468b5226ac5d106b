// Sends each HTTP request where it belongs: the plugin, the host's own controls, or what a page
// finds beside the plugin.
//
// Threads: the HTTP server's; the work itself runs as tasks of the scheduler, one for each request.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/host_control.h"
#include "host/http/http_message.h"
#include "host/pages/sibling_pages.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"
#include "host/timeline/traffic.h"

namespace Kest::Host {

class RequestRouter {
 public:
  // The parts outlive the router and every task it posts.
  RequestRouter(Scheduler* scheduler, SessionManager* sessions, HostControl* control,
                const SiblingPages* siblings, Traffic* traffic, HostLog* log);

  // [any thread] The refusal of what a reserved connection is not kept for; nothing for the rest.
  // Needs the request's head only.
  static std::optional<HttpResponse> Refuse(const HttpRequest& request);

  void Handle(HttpRequest request, const Respond& respond);

 private:
  using Handler = std::function<HttpResponse(const HttpRequest&)>;

  void Dispatch(HttpRequest request, const Respond& respond);
  void RunTask(HttpRequest request, const Respond& respond, Handler handle);
  // Each with its rows in the timeline.
  HttpResponse AskPlugin(const HttpRequest& request);
  HttpResponse AskControl(const HttpRequest& request);
  HttpResponse AskSibling(const HttpRequest& request);

  Scheduler* const scheduler_;
  SessionManager* const sessions_;
  HostControl* const control_;
  const SiblingPages* const siblings_;
  Traffic* const traffic_;
  HostLog* const log_;
};

}  // namespace Kest::Host
