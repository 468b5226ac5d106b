// The whole development host, put together: scheduler, world, plugin, events and HTTP server.
//
// Threads: made, started and stopped on one thread of the program, which is none of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/maybe_type.h"
#include "base/mutex.h"
#include "host/auditor/auditor.h"
#include "host/clock/host_clock.h"
#include "host/host_control.h"
#include "host/host_options.h"
#include "host/http/http_server.h"
#include "host/http/request_guard.h"
#include "host/record/recorder.h"
#include "host/request_router.h"
#include "host/scenario/file_watch.h"
#include "host/scenario/plugin_copies.h"
#include "host/scenario/scenarios.h"
#include "host/session/clock_driver.h"
#include "host/session/event_stream.h"
#include "host/session/host_log.h"
#include "host/session/readiness.h"
#include "host/session/service_event_thread.h"
#include "host/session/session_manager.h"
#include "host/tasks/scheduler.h"
#include "host/timeline/traffic.h"

namespace Kest::Host {

class DevelopmentHost {
 public:
  // `log` outlives the host.
  DevelopmentHost(HostOptions options, HostLog* log);
  ~DevelopmentHost();

  // The status of a failure that means that tasks of the plugin still run: the process has to end
  // at once.
  static constexpr int32_t kTooLate = 504;

  // Listens, makes the world, starts the plugin and serves. A failure message is fit to be shown.
  Maybe<Nothing> Start();
  // Stops the plugin, responds to what still waits and ends the server. Called once.
  Maybe<Nothing> Stop();

  // Waits until nothing is left to do. Returns why the plugin is not ready all the same, in words
  // for people; nothing when it is. REQUIRES: started.
  std::vector<std::string> AwaitReady();

  // [any thread but those of tasks] Handles a request as if it had come over HTTP. REQUIRES:
  // started; the host is stopped before what waits for a response goes.
  std::future<HttpResponse> Ask(HttpRequest request);

  // The first finding of a strict audit, in one line for people; nothing while there is none.
  std::optional<std::string> AuditFinding() const KEST_EXCLUDES(findingMutex_);
  // `listener` is called once for it, on a thread of the host. Set it before Start.
  void SetFindingListener(std::function<void()> listener) {
    findingListener_ = std::move(listener);
  }
  // Waits until nothing is left to do, and what is due has been compared. REQUIRES: started.
  void AwaitIdle();

  // "http://127.0.0.1:8510/". REQUIRES: started.
  std::string Url() const;
  // {"ready":true,...} on one line. REQUIRES: started.
  std::string ReadyLine() const;

 private:
  template <typename Result>
  std::optional<Result> RunTask(const std::string& name, std::function<Result()> work);
  Maybe<Nothing> StartRecording();
  Maybe<Nothing> StartSession();
  void FollowFiles();
  void TakeFinding(const std::string& text) KEST_EXCLUDES(findingMutex_);

  const HostOptions options_;
  HostLog* const log_;
  HostClock clock_;
  EventStream stream_;
  EventStream timelineStream_;
  std::unique_ptr<Recorder> recorder_;  // null: nothing is recorded
  Timeline timeline_;
  Ledger ledger_;
  Traffic traffic_{&timeline_, &ledger_};
  std::unique_ptr<HttpServer> server_;  // outlives the tasks, which hold its Responds
  Scheduler scheduler_;
  ServiceEventThread serviceEvents_;
  PluginCopies copies_;
  std::function<void()> findingListener_;
  mutable Mutex findingMutex_;
  std::optional<std::string> finding_ KEST_GUARDED_BY(findingMutex_);
  Auditor auditor_;
  SessionManager sessions_;
  Scenarios scenarios_;
  ClockDriver clockDriver_;
  Readiness readiness_;
  HostControl control_;
  SiblingPages siblings_;
  RequestGuard guard_;
  RequestRouter router_;
  std::unique_ptr<FileWatch> worldWatch_;  // end before what they call
  std::unique_ptr<FileWatch> pluginWatch_;
};

}  // namespace Kest::Host
