// Finds the control that a request below "/_host", or of the index, asks for. What is none of the
// host's own is left to the world's controls.
//
// Threads: [task] on the scheduler's tasks, except where a function says otherwise.
#pragma once

#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "host/controls/control_group.h"
#include "host/http/http_message.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

class HostControl {
 public:
  // Learns of each control that has changed something, by its operation id.
  using Listener = std::function<void(std::string_view operationId)>;

  // `sessions` outlives the control. Every row has a description.
  HostControl(const std::vector<ControlGroup>& groups, SessionManager* sessions, Listener changed);

  // [any thread] Whether a request of that path is the control's: the index, and all below
  // "/_host".
  static bool Has(std::string_view path);
  // [any thread] Whether Handle must be called on a task for this request. Streams do not
  // wait for tasks.
  static bool NeedsTask(std::string_view method, std::string_view path);

  // [task], or any thread where NeedsTask says so. Serves a request whose path Has accepts.
  HttpResponse Handle(const HttpRequest& request);

 private:
  HttpResponse CallOwn(const HttpRequest& request, FoundControl found);
  HttpResponse AskWorld(const HttpRequest& request);

  std::map<std::string_view, HostControlRow> rows_;  // by operation id
  SessionManager* const sessions_;
  const Listener changed_;
};

}  // namespace Kest::Host
