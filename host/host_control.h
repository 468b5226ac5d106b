// The host's own control endpoints below "/_host": health, idle, reset, log, the pages about the
// plugin's API, the list of everything that is served. What they do not know they leave to the
// world.
//
// Threads: [task] on the scheduler's tasks.
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

  // Answers a request of which the path begins with "/_host/".
  HttpResponse Handle(const HttpRequest& request);
  // Answers "/": what is served here.
  HttpResponse Index();

 private:
  HttpResponse Health(std::string_view query);
  HttpResponse Idle(std::string_view query);
  HttpResponse Reset(std::string_view query);
  HttpResponse Log(std::string_view query);
  HttpResponse Help(std::string_view query);
  HttpResponse OpenApi(std::string_view query);
  HttpResponse AskWorld(const HttpRequest& request, std::string_view path);

  struct Endpoint;
  static const Endpoint kEndpoints[];

  Scheduler* const scheduler_;
  ServiceEventThread* const serviceEvents_;
  EventStream* const stream_;
  SessionManager* const sessions_;
  const HostLog* const log_;
};

}  // namespace Kest::Host
