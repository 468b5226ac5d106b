// The library's one export.
#include <memory>

#include "examples/hello_plugin/hello_plugin.h"
#include "plugin/handshake.h"
#include "plugin/host_interface.h"

extern "C" KEST_EXPORT void KEST_ABI load_hello(KestHandshakeBlock* block) noexcept {
  Kest::Handshake(block, "hello", [](Kest::PluginRuntime& runtime) {
    return std::unique_ptr<Kest::PluginBase>(
        std::make_unique<Kest::Examples::HelloPlugin>(runtime));
  });
}
