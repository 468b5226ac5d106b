// For controls that need the plugin.
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include "host/http/http_responses.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

// What `handle` makes of the running session, or 503 when there is none.
template <typename Handler>
HttpResponse WithSession(SessionManager* sessions, Handler handle) {
  PluginSession* const session = sessions->Current();
  return session != nullptr ? handle(*session) : ProblemResponse(503, "The plugin is not running.");
}

}  // namespace Kest::Host
