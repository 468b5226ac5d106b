// Whether a front end would find the plugin ready, and why not.
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/service_event_thread.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"
#include "host/timeline/timeline.h"

namespace Kest::Host {

struct ReadinessReport {
  struct Check {
    std::string_view name;
    std::string reason;  // empty: it holds
  };

  std::vector<Check> checks;  // up to the first that has to hold before the next can

  // Those of the checks that do not hold.
  std::vector<std::string> Reasons() const;
};

// The checks: "plugin" has started, "signedIn", loot is "enabled", all "sources" have
// responded, the "inventory" has been retrieved once. All but the first are the plugin's own
// decisions, and so are their reasons where the plugin explains itself.
class Readiness {
 public:
  // The parts outlive it.
  Readiness(Scheduler* scheduler, ServiceEventThread* serviceEvents, SessionManager* sessions,
            Timeline* timeline)
      : scheduler_(scheduler),
        serviceEvents_(serviceEvents),
        sessions_(sessions),
        timeline_(timeline),
        retrieval_(std::make_shared<Retrieval>()) {}

  // Has no effect but one: the inventory comes with its first reader, so where all that comes
  // before it holds, nothing is left to do and no reader has come, a task reads it, with a row of
  // its own in the timeline. Each of the two, quiet and the read, is given a moment, but neither
  // waits for a frozen clock.
  ReadinessReport Look();

 private:
  struct Retrieval {
    uint64_t session = 0;  // the number of the session it is about
    bool isRunning = true;
    bool isDone = false;
  };

  std::string InventoryReason(PluginSession& session) const;
  bool WaitsForReader() const;
  void ReadUnlessRead();

  Scheduler* const scheduler_;
  ServiceEventThread* const serviceEvents_;
  SessionManager* const sessions_;
  Timeline* const timeline_;
  std::shared_ptr<Retrieval> retrieval_;
};

}  // namespace Kest::Host
