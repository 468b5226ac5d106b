// The host's side of the C interface: the service table one run of the plugin is given, and the
// delivery of what its world causes.
//
// Threads:  [task] on the scheduler's tasks, except where a function says otherwise.
// Rules:    an entry that the plugin calls on a wrong thread, or with an argument the interface
//           forbids, is refused and logged; the host goes on.
// Lifetime: the table is valid from construction to destruction. After Close nothing of the plugin
//           is called through it any more.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.h"
#include "host/clock/host_clock.h"
#include "host/library/owned_services.h"
#include "host/session/event_stream.h"
#include "host/session/host_log.h"
#include "host/session/plugin_subscriptions.h"
#include "host/session/service_event_thread.h"
#include "host/session/session_observer.h"
#include "host/tasks/scheduler.h"
#include "host/timeline/traffic.h"
#include "host/world/data/seeded_random.h"
#include "host/world/world.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class ServiceTable {
 public:
  // What the table's entries work on. Everything outlives the services.
  struct Wiring {
    Scheduler* scheduler;
    ServiceEventThread* serviceEvents;
    EventStream* stream;
    HostLog* log;
    Traffic* traffic;
    World* world;
    const HostClock* clock = &HostClock::Real();
    uint64_t seed = 1;                        // of the request ids
    std::function<void()> worldChanged = {};  // called after each call that may have changed it
    SessionObserver* observer = &SessionObserver::None();
  };

  explicit ServiceTable(Wiring wiring);
  ~ServiceTable();
  ServiceTable(const ServiceTable&) = delete;
  ServiceTable& operator=(const ServiceTable&) = delete;

  const KestHostServices* Table() const { return &services_.table; }

  // Passes on what the world has caused since the last call: resource events as tasks, service
  // events to their thread. `isControl`: what caused it was no call of the plugin.
  void DispatchWorldEvents(bool isControl);
  // [any thread] Calls the follower of a service event, on the calling thread.
  void DeliverServiceEvent(const ServiceEventThread::Event& event);

  // Drops the subscriptions and the tasks and completions that have not begun.
  void Close();

  std::vector<std::string> SubscribedNames() const { return subscriptions_.Names(); }
  const std::string& UserAgent() const { return userAgent_; }

 private:
  struct Entries;  // the functions of the table
  struct Sent;     // a request on its way
  struct Caller {  // who waits for a response
    KestCompletion completion;
    void* context;
    uint64_t row;  // of the request in the timeline
    std::string url;
  };

  bool CheckTask(std::string_view entry) const;
  bool Request(const KestRequest& request, KestCompletion completion, void* context);
  void Complete(const Sent& sent);
  void Respond(const Caller& caller, const WorldResponse& result);
  void RespondLater(const Caller& caller, WorldResponse result);
  void DispatchReleased();
  // Runs `work` at once, or as a task after a delay.
  void WhenDue(int delayMilliseconds, Scheduler::Work work);
  void Stream(std::string_view path, int32_t eventType, std::string_view json);
  void AppendEvent(std::string_view path, int32_t eventType, std::string_view json);
  bool Subscribe(std::string_view name, KestDelivery delivery, void* context);
  bool Publish(std::string_view path, int32_t eventType, std::string_view json);
  int32_t PostTask(std::string_view name, KestTask run, void* context);
  void QueueResourceEvent(std::string_view name, std::string_view payload);
  void FillUuid(uint8_t* uuid) KEST_EXCLUDES(uuidMutex_);

  const Wiring wiring_;
  OwnedServices<ServiceTable> services_;
  PluginSubscriptions subscriptions_;
  std::string userAgent_;
  Mutex uuidMutex_;  // a leaf
  SeededRandom uuids_ KEST_GUARDED_BY(uuidMutex_);
  std::map<uint64_t, Caller> held_;
};

}  // namespace Kest::Host
