// Whether a front end would find the plugin ready, and why not.
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"

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
  Readiness(Scheduler* scheduler, SessionManager* sessions)
      : scheduler_(scheduler), sessions_(sessions), retrieval_(std::make_shared<Retrieval>()) {}

  // The inventory comes with its first reader, so a task of its own reads as long as the session
  // does not have it. That is given a moment, which is enough unless the platform is asked.
  ReadinessReport Look();

 private:
  struct Retrieval {
    uint64_t session = 0;  // the number of the session it is about
    bool isRunning = false;
    bool isDone = false;
  };

  std::string InventoryReason();

  Scheduler* const scheduler_;
  SessionManager* const sessions_;
  std::shared_ptr<Retrieval> retrieval_;
};

}  // namespace Kest::Host
