// One run of the plugin in one run of its world, from loading the library to closing it.
//
// Threads:  [task] on the scheduler's tasks, except the constructor and the destructor: there no
//           task of the plugin may run.
// Lifetime: construction, Start once, requests, Stop once, destruction.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/maybe_type.h"
#include "host/http/http_message.h"
#include "host/library/plugin_library.h"
#include "host/session/service_table.h"
#include "host/world/world.h"

namespace Kest::Host {

class PluginSession {
 public:
  // The host's parts that outlive every session.
  struct Surroundings {
    Scheduler* scheduler;
    ServiceEventThread* serviceEvents;
    EventStream* stream;
    HostLog* log;
    Traffic* traffic;
    const HostClock* clock = &HostClock::Real();
    uint64_t seed = 1;  // of the ids that the plugin gives its requests
    // Called after each call that may have changed the world.
    std::function<void(const World& world)> worldChanged = {};
    SessionObserver* observer = &SessionObserver::None();
    PluginLibrary::Enter enter = {};  // how each library is entered
  };

  PluginSession(std::unique_ptr<PluginLibrary> library, std::unique_ptr<World> world,
                const Surroundings& surroundings);

  // False: the plugin did not start, and has been stopped.
  bool Start();
  // Returns when the plugin has stopped; nothing of it is called any more. A second call and one
  // without a successful Start do nothing.
  void Stop();

  // Hands a request to the plugin; returns its response, a problem document for a failure.
  HttpResponse Request(const HttpRequest& request);
  // Reads a path, as JSON, for the host itself: no observer learns of it, and Statistics leaves it
  // out.
  HttpResponse ReadAside(const std::string& path);
  // Calls a function of the plugin by its name. Returns as Request.
  HttpResponse Invoke(std::string_view function, std::span<const KestValue> arguments);
  // Asks the plugin to explain a decision. Returns as Request; 501 when the plugin cannot.
  HttpResponse Explain(std::string_view question);
  // Signs in whom the world says, or its player when it leaves that open and `byDefault`.
  void SignInAtStart(bool byDefault);
  // As World::Adopt; what it causes is delivered.
  Maybe<World::Change> AdoptWorld(const WorldText& file, const WorldReading& reading);
  // REQUIRES: stopped, or never started. The session has no world after that.
  std::unique_ptr<World> TakeWorld() { return std::move(world_); }
  const World& GetWorld() const { return *world_; }

  // Hands a control request to the world and delivers what it causes.
  HttpResponse Control(const HttpRequest& request, std::string_view path);

  // The plugin writes the lines that the log wants from now on.
  void ApplyLogLevel();

  // Sets the fault rules that outlive a reset in the world that comes next.
  void HandFaultsTo(World& next) const;
  // What a page finds at a decoded path of a sibling plugin; 404 when there is nothing.
  HttpResponse SiblingPage(std::string_view path) const;

  const KestApiDescriptor& Api() const { return *library_->Block().api; }
  // What clients and siblings made the plugin count.
  KestStatistics Statistics() const;
  // Whether an endpoint of the plugin has that method.
  bool Takes(std::string_view method) const;
  std::string FullName() const { return library_->Block().fullName; }
  std::string Version() const;
  ServiceTable& Services() { return services_; }

 private:
  void NoteWorldChange();
  void FinishWorldChange();  // delivers what it causes first
  HttpResponse Call(const HttpRequest& request);
  HttpResponse TakeResponse(const KestResponse* given);

  const std::unique_ptr<PluginLibrary> library_;
  std::unique_ptr<World> world_;
  const Surroundings surroundings_;
  ServiceTable services_;
  bool mustStop_ = false;
  uint64_t readsAside_ = 0;
  uint64_t readsAsideFailed_ = 0;  // of these
};

}  // namespace Kest::Host
