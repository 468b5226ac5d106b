// The plugin's library in this process: opened, entered through its handshake, closed again.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/maybe_type.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class PluginLibrary {
 public:
  // The plugin API version this host speaks.
  static constexpr uint32_t kApiMajor = 18;
  static constexpr uint32_t kApiMinor = 0;
  static constexpr uint32_t kApiPatch = 0;

  // Runs the handshake in another way than by calling `load` with the block. What it returns is
  // kept until just before the library is closed.
  using Enter = std::function<std::shared_ptr<void>(KestLoadFunction load, KestHandshakeBlock*)>;

  // Opens the file and runs the handshake. A failure names the file and what is wrong with it. A
  // plugin that does not accept this host's version ends the process, as its interface says.
  static Maybe<std::unique_ptr<PluginLibrary>> Open(const std::string& path,
                                                    const Enter& enter = {});
  // Closes the library. REQUIRES: nothing of the plugin is used any more.
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // What the plugin wrote at the handshake; complete, and valid while the library is open.
  const KestHandshakeBlock& Block() const { return block_; }

 private:
  explicit PluginLibrary(void* handle) : handle_(handle) {}

  void* const handle_;
  KestHandshakeBlock block_ = {};
  std::shared_ptr<void> entered_;
};

}  // namespace Kest::Host
