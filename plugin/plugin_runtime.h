// PluginRuntime is the plugin as the host holds it (its context pointer): the plugin object with
// all that must outlive it, so that a call which comes while stop takes the object away, or after
// it, finds a closed gate and not freed memory.
//
// Threads:  the gate, the counters and the host services say which; start and stop run on module
//           tasks; `plugin` is used by the handshake and by calls counted in the gate.
// Lifetime: from the handshake until the library is unloaded; the plugin object goes at stop.
#pragma once

#include <memory>

#include "plugin/api_descriptor.h"
#include "plugin/entry_gate.h"
#include "plugin/host_services.h"
#include "plugin/log_outputs.h"
#include "plugin/plugin_identity.h"
#include "plugin/plugin_log_target.h"
#include "plugin/runtime_counters.h"

namespace Kest {

class PluginBase;

struct PluginRuntime {
  PluginRuntime(const ApiVersion& version, PluginNames pluginNames);
  ~PluginRuntime();
  PluginRuntime(const PluginRuntime&) = delete;
  PluginRuntime& operator=(const PluginRuntime&) = delete;

  // Keeps the host's table and initialises the plugin; may yield. False: started or stopped before,
  // the table is too small, or the plugin refused.
  bool Start(const KestHostServices& services);
  // Ends waits, yields until no call is in progress, and destroys the plugin object. Repeating it
  // does nothing.
  void Stop();
  bool IsStopped() const { return phase_ == Phase::kStopped; }

  const ApiVersion hostVersion;
  const PluginNames names;
  EntryGate gate;
  RuntimeCounters counters;
  HostServices host;
  LogOutputs logOutputs;
  std::unique_ptr<PluginBase> plugin;
  ApiDescriptor api;

 private:
  enum class Phase { kLoaded, kStarted, kStopped };

  void AttachLogTarget(const KestHostServices& services);
  void DetachLogTarget();

  Phase phase_ = Phase::kLoaded;
  std::unique_ptr<PluginLogTarget> logTarget_;  // null when the process has one already
};

}  // namespace Kest
