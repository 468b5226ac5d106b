#include "plugin/handshake.h"

#include <memory>
#include <utility>
#include <vector>

#include "binding/types/type_registry.h"
#include "log/fatal.h"
#include "log/logger.h"
#include "log/positional_format.h"
#include "plugin/boundary.h"
#include "plugin/callbacks.h"
#include "plugin/plugin_events.h"
#include "plugin/plugin_runtime.h"

namespace Kest {

namespace {

constexpr std::string_view kPluginType = "backend";

// Every runtime this library handed to a host. A stopped one is freed when the library goes; one
// that was never stopped is left alone, since its host may still be calling.
class RuntimeList {
 public:
  ~RuntimeList() {
    for (PluginRuntime* runtime : runtimes_) {
      if (runtime->IsStopped()) delete runtime;
    }
  }
  PluginRuntime* Keep(std::unique_ptr<PluginRuntime> runtime) {
    runtimes_.push_back(runtime.get());
    return runtime.release();
  }

 private:
  std::vector<PluginRuntime*> runtimes_;
};

RuntimeList& KeptRuntimes() {
  static RuntimeList list;
  return list;
}

void EndProcessUnlessCompatible(const ApiVersion& host, const PluginNames& names) {
  if (IsCompatibleHost(host)) return;
  const std::string text =
      Format("%1 which supports plugin API %2 is not compatible with core's plugin API %3",
             names.fullName, VersionText(kPluginApiVersion), VersionText(host));
  Log(Level::kError, kGroupDebug, "%s", text.c_str());
  Fatal(kFatalPluginApi);
}

// Null: no memory for the plugin object.
PluginRuntime* MakeRuntime(const ApiVersion& host, PluginNames names, PluginFactory factory) {
  auto runtime = std::make_unique<PluginRuntime>(host, std::move(names));
  runtime->plugin = factory(*runtime);
  if (runtime->plugin == nullptr) return nullptr;
  RegisterPluginEvents(TypeRegistry::Process());
  runtime->plugin->RegisterApi();
  LogAlways("%s api registered", runtime->names.fullName.c_str());
  runtime->api.Build(runtime->plugin->Api(), TypeRegistry::Process());
  return KeptRuntimes().Keep(std::move(runtime));
}

}  // namespace

void Handshake(KestHandshakeBlock* block, std::string_view shortName,
               PluginFactory factory) noexcept {
  if (block == nullptr) return;
  PluginRuntime* runtime = nullptr;
  RunAndLog("Handshake", [&] {
    const ApiVersion host{block->major, block->minor, block->patch};
    PluginNames names = MakePluginNames(shortName, kPluginType);
    EndProcessUnlessCompatible(host, names);
    runtime = MakeRuntime(host, std::move(names), factory);
  });
  block->major = kPluginApiVersion.major;
  block->minor = kPluginApiVersion.minor;
  block->patch = kPluginApiVersion.patch;
  block->callbacks = &CallbackTable();
  block->context = runtime;
  block->fullName = runtime != nullptr ? runtime->names.fullName.c_str() : nullptr;
  block->api = runtime != nullptr ? &runtime->api.Table() : nullptr;
}

}  // namespace Kest
