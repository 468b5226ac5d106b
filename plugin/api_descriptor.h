// ApiDescriptor is what the host learns about the plugin's API: its endpoints, its events, and the
// functions to call them by. It copies every string, so it stays readable while the plugin object
// is destroyed. Threads: built on the loader's thread, constant afterwards.
#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "base/kept_memory.h"
#include "plugin/host_interface.h"

namespace Kest {

class Dispatcher;
class TypeRegistry;
struct TypeIdentifier;

class ApiDescriptor {
 public:
  ApiDescriptor();
  ApiDescriptor(const ApiDescriptor&) = delete;
  ApiDescriptor& operator=(const ApiDescriptor&) = delete;

  // Lists the dispatcher's endpoints and the registry's events, in order of registration.
  void Build(const Dispatcher& dispatcher, const TypeRegistry& registry);
  const KestApiDescriptor& Table() const { return table_; }

 private:
  KestText Keep(std::string_view text);
  KestTypeName Name(const TypeIdentifier& type);

  KestApiDescriptor table_{};
  KeptMemory texts_;
  std::deque<std::vector<KestArgument>> arguments_;
  std::vector<KestEndpoint> endpoints_;
  std::vector<KestText> eventNames_;
};

}  // namespace Kest
