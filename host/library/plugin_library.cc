#include "host/library/plugin_library.h"

#include <cstddef>

#include "host/library/shared_library.h"

namespace Kest::Host {
namespace {

constexpr char kEntryName[] = "load_tav_loot";

// Whether all of it that this host needs is there: of the entries, all but the late ones.
bool IsComplete(const KestApiDescriptor& api) {
  return api.size >= offsetof(KestApiDescriptor, setLogging) &&
         api.endpointSize >= sizeof(KestEndpoint) && api.argumentSize >= sizeof(KestArgument);
}

}  // namespace

Maybe<std::unique_ptr<PluginLibrary>> PluginLibrary::Open(const std::string& path,
                                                          const Enter& enter) {
  std::string reason;
  void* const handle = OpenSharedLibrary(path, &reason);
  if (handle == nullptr) return Failure{"Cannot load the plugin " + path + ": " + reason};
  std::unique_ptr<PluginLibrary> library(new PluginLibrary(handle));
  const auto entry = reinterpret_cast<KestLoadFunction>(FindSymbol(handle, kEntryName));
  if (entry == nullptr) {
    return Failure{"Cannot load the plugin " + path + ": it has no entry " + kEntryName};
  }
  KestHandshakeBlock& block = library->block_;
  block.major = kApiMajor;
  block.minor = kApiMinor;
  block.patch = kApiPatch;
  if (enter) {
    library->entered_ = enter(entry, &block);
  } else {
    entry(&block);
  }
  if (block.callbacks == nullptr || block.context == nullptr || block.fullName == nullptr ||
      block.api == nullptr || !IsComplete(*block.api)) {
    return Failure{"Cannot load the plugin " + path + ": its handshake is incomplete"};
  }
  return library;
}

PluginLibrary::~PluginLibrary() {
  entered_.reset();
  CloseSharedLibrary(handle_);
}

}  // namespace Kest::Host
