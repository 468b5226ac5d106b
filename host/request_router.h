// Sends each HTTP request where it belongs: the plugin, the event stream or the control endpoints.
//
// Threads: the HTTP server's; the work itself runs as tasks of the scheduler, one for each request.
#pragma once

#include <functional>
#include <string>

#include "host/event_stream.h"
#include "host/host_control.h"
#include "host/http_message.h"
#include "host/scheduler.h"
#include "host/session_keeper.h"

namespace Kest::Host {

class RequestRouter {
 public:
  // The parts outlive the router and every task it posts.
  RequestRouter(Scheduler* scheduler, SessionKeeper* keeper, HostControl* control,
                EventStream* stream);

  void Handle(HttpRequest request, const Respond& respond);

 private:
  using Answer = std::function<HttpAnswer(const HttpRequest&)>;

  void RunTask(HttpRequest request, const Respond& respond, Answer answer);
  HttpAnswer AskPlugin(const HttpRequest& request);
  HttpAnswer FollowEvents(const HttpRequest& request);

  Scheduler* const scheduler_;
  SessionKeeper* const keeper_;
  HostControl* const control_;
  EventStream* const stream_;
};

}  // namespace Kest::Host
