// The handshake between host and plugin, and the callback table it hands out.
// Threads: the loader's.
#pragma once

#include <memory>
#include <string_view>

#include "plugin/host_interface.h"
#include "plugin/plugin_base.h"

namespace Kest {

// Makes the plugin object. Null, or std::bad_alloc: there is no memory for it.
using PluginFactory = std::unique_ptr<PluginBase> (*)(PluginRuntime& runtime);

// Checks the host's version, makes and names the plugin, registers its API and fills the block's
// out-words. An incompatible host ends the process with "ALE-EECF0606". Without memory for the
// plugin object the context, the name and the descriptor are null. A null block does nothing.
void Handshake(KestHandshakeBlock* block, std::string_view shortName,
               PluginFactory factory) noexcept;

}  // namespace Kest
