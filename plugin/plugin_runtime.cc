#include "plugin/plugin_runtime.h"

#include <utility>

#include "log/logger.h"
#include "plugin/boundary.h"
#include "plugin/optional_services.h"
#include "plugin/plugin_base.h"

namespace Kest {

PluginRuntime::PluginRuntime(const ApiVersion& version, PluginNames pluginNames)
    : hostVersion(version), names(std::move(pluginNames)), host(gate, counters) {}

PluginRuntime::~PluginRuntime() = default;

bool PluginRuntime::Start(const KestHostServices& services) {
  if (phase_ != Phase::kLoaded || services.size < kOldestTableSize) return false;
  const GateEntry entry(gate);
  if (!entry) return false;
  phase_ = Phase::kStarted;
  host.Attach(&services);
  counters.MarkStart();
  AttachLogTarget(services);
  host.Identify(names.fullName, UserAgent(hostVersion, names.fullName));
  return plugin->Initialise();
}

void PluginRuntime::Stop() {
  if (phase_ == Phase::kStopped) return;
  phase_ = Phase::kStopped;
  gate.Close();
  RunAndLog("Shutdown", [this] { plugin->Shutdown(); });
  // A call in progress may still start something, so cancelling is repeated. The last time no call
  // is in progress: nothing that uses the plugin object is left when it is destroyed.
  for (;;) {
    const bool isIdle = gate.CallsInProgress() == 0;
    host.CancelAll();
    if (isIdle) break;
    host.Yield();
  }
  plugin.reset();
  DetachLogTarget();
  host.Release();
}

void PluginRuntime::AttachLogTarget(const KestHostServices& services) {
  Logger& logger = Logger::Instance();
  if (logger.FindTarget(PluginLogTarget::kClassName) != nullptr) return;
  logTarget_ = std::make_unique<PluginLogTarget>(services);
  logOutputs.Attach(*logTarget_);
  logger.SetClock({[](const void* table) {
                     return HostMilliseconds(static_cast<const KestHostServices*>(table));
                   },
                   &services});
}

void PluginRuntime::DetachLogTarget() {
  if (logTarget_ == nullptr) return;
  Logger::Instance().SetClock({});
  logOutputs.Detach(*logTarget_);
  logTarget_.reset();
}

}  // namespace Kest
