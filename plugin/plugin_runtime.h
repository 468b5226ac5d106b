// PluginRuntime is the plugin as the host holds it (its context pointer): the plugin object with all
// that must outlive it, so that a call which comes while stop takes the object away, or after it,
// finds a closed gate and not freed memory.
//
// Threads:  the gate, the counters and the host services say which; `plugin` is touched by the
//           handshake and by those inside the gate.
// Lifetime: from the handshake until the library is unloaded; the plugin object goes at stop.
#pragma once

#include <memory>

#include "plugin/entry_gate.h"
#include "plugin/host_services.h"
#include "plugin/plugin_identity.h"
#include "plugin/runtime_counters.h"

namespace Kest {

class ApiDescriptor;
class PluginBase;

struct PluginRuntime {
  enum class Phase { kHandshake, kStarted, kStopped };

  PluginRuntime();
  ~PluginRuntime();
  PluginRuntime(const PluginRuntime&) = delete;
  PluginRuntime& operator=(const PluginRuntime&) = delete;

  ApiVersion hostVersion;
  PluginNames names;
  EntryGate gate;
  RuntimeCounters counters;
  HostServices host;
  Phase phase = Phase::kHandshake;  // start and stop only
  std::unique_ptr<PluginBase> plugin;
  std::unique_ptr<ApiDescriptor> api;
};

}  // namespace Kest
