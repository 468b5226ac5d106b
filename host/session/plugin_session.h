// One run of the plugin in one run of its world, from loading the library to closing it.
//
// Threads:  [task] on the scheduler's tasks, except Open and the destructor: there no task of the
//           plugin may run.
// Lifetime: Open, Start once, requests, Stop once, destruction.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

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
  };

  // Loads the library. A failure message is fit to be shown.
  static Maybe<std::unique_ptr<PluginSession>> Open(const std::string& libraryPath,
                                                    std::unique_ptr<World> world,
                                                    const Surroundings& surroundings);

  // False: the plugin did not start, and has been stopped.
  bool Start();
  // Returns when the plugin has stopped; nothing of it is called any more. A second call and one
  // without a successful Start do nothing.
  void Stop();

  // Hands a request to the plugin; returns its response, a problem document for a failure.
  HttpResponse Request(const HttpRequest& request);
  // Calls a function of the plugin by its name. Returns as Request.
  HttpResponse Invoke(std::string_view function, std::span<const KestValue> arguments);
  // Asks the plugin to explain a decision. Returns as Request; 501 when the plugin cannot.
  HttpResponse Explain(std::string_view question);
  // Hands a control request to the world and delivers what it causes.
  HttpResponse Control(const HttpRequest& request, std::string_view path);

  // Sets the fault rules that outlive a reset in the world that comes next.
  void HandFaultsTo(World& next) const;

  const KestApiDescriptor& Api() const { return *library_->Block().api; }
  std::string FullName() const { return library_->Block().fullName; }
  std::string Version() const;
  KestStatistics Statistics() const;
  ServiceTable& Services() { return services_; }

 private:
  PluginSession(std::unique_ptr<PluginLibrary> library, std::unique_ptr<World> world,
                const Surroundings& surroundings);

  HttpResponse TakeResponse(const KestResponse* given);

  const std::unique_ptr<PluginLibrary> library_;
  const std::unique_ptr<World> world_;
  ServiceEventThread* const serviceEvents_;
  ServiceTable services_;
  bool mustStop_ = false;
};

}  // namespace Kest::Host
