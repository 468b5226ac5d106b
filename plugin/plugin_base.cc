#include "plugin/plugin_base.h"

#include "binding/types/type_registry.h"

namespace Kest {

PluginBase::PluginBase(PluginRuntime& runtime)
    : runtime_(runtime), module_(runtime.host), dispatcher_(TypeRegistry::Process()) {}

PluginBase::~PluginBase() = default;

Response PluginBase::Explain(std::string_view) {
  return NotFound();
}

}  // namespace Kest
