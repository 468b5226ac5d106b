// The host's own pages and controls: index, events, health, idle, reset, log and the pages about
// the plugin's API. What is not known here and below "/_host" is left to the world's controls.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
#pragma once

#include <string_view>

#include "host/http/http_message.h"
#include "host/session/event_stream.h"
#include "host/session/host_log.h"
#include "host/session/service_event_thread.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"

namespace Kest::Host {

class HostControl {
 public:
  // The parts outlive the control.
  HostControl(Scheduler* scheduler, ServiceEventThread* serviceEvents, EventStream* stream,
              SessionManager* sessions, const HostLog* log);

  // [any thread] Whether Handle must be called on a task for this path. The stream of events and
  // what is not served at all do not wait for tasks.
  static bool NeedsTask(std::string_view path);

  // [task], or any thread where NeedsTask says so. Serves a request that is not the plugin's.
  HttpResponse Handle(const HttpRequest& request);

 private:
  HttpResponse Index(const HttpRequest& request);
  HttpResponse FollowEvents(const HttpRequest& request);
  HttpResponse Health(const HttpRequest& request);
  HttpResponse Idle(const HttpRequest& request);
  HttpResponse Reset(const HttpRequest& request);
  HttpResponse Log(const HttpRequest& request);
  HttpResponse Help(const HttpRequest& request);
  HttpResponse OpenApi(const HttpRequest& request);
  HttpResponse AskWorld(const HttpRequest& request);
  // What `handle` makes of the running session, or 503 when there is none.
  template <typename Handler>
  HttpResponse WithSession(Handler handle);

  struct Row {
    std::string_view operationId;
    HttpResponse (HostControl::*handle)(const HttpRequest& request);
  };
  static const Row kRows[];

  Scheduler* const scheduler_;
  ServiceEventThread* const serviceEvents_;
  EventStream* const stream_;
  SessionManager* const sessions_;
  const HostLog* const log_;
};

}  // namespace Kest::Host
