// PluginBase is what every plugin on this SDK derives from. The handshake makes the object, names
// it and calls RegisterApi; the host's start calls Initialise, its stop Shutdown and then the
// destructor.
//
// Threads:  all virtual operations run on module tasks, or on the loader's thread (RegisterApi).
// Lifetime: the runtime (names, gate, host services, counters) is made before the object and
//           outlives it, so references to its parts may be taken in the constructor.
// Stop:     the gate closes first and rejects requests, events, tasks and completions. Then
//           Shutdown runs, every pending request ends with "Finalizing", subscriptions are dropped,
//           and the destructor runs when no call is in progress. Handlers that wait meanwhile get
//           the failure.
#pragma once

#include <string>
#include <string_view>

#include "api/dispatcher.h"
#include "api/response.h"
#include "plugin/app_module.h"
#include "plugin/host_services.h"
#include "plugin/plugin_runtime.h"

namespace Kest {

class PluginBase {
 public:
  virtual ~PluginBase();
  PluginBase(const PluginBase&) = delete;
  PluginBase& operator=(const PluginBase&) = delete;

  // Registers types and routes. The handshake then logs "%s api registered" itself.
  virtual void RegisterApi() = 0;
  // Subscribes and loads; may wait. Start returns what it returns.
  virtual bool Initialise() = 0;
  // Ends waits that are not on host services. Must not wait.
  virtual void Shutdown() {}
  // Explains a decision as it is now; `question` is a path and query ("item/CHEST_1"). Must not
  // wait and changes nothing. A plugin that explains nothing knows no question.
  virtual Response Explain(std::string_view question);

  Dispatcher& Api() { return dispatcher_; }

 protected:
  explicit PluginBase(PluginRuntime& runtime);

  HostServices& Host() { return runtime_.host; }
  AppModule& Module() { return module_; }
  // "vwm-be-tav-loot"
  const std::string& FullName() const { return runtime_.names.fullName; }
  bool IsStopping() const { return runtime_.gate.IsClosed(); }

 private:
  PluginRuntime& runtime_;
  AppModule module_;
  Dispatcher dispatcher_;
};

}  // namespace Kest
