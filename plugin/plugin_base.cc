#include "plugin/plugin_base.h"

#include "binding/types/type_registry.h"

namespace Kest {

PluginBase::PluginBase(PluginRuntime& runtime)
    : runtime_(runtime), module_(runtime.host), dispatcher_(TypeRegistry::Process()) {}

PluginBase::~PluginBase() = default;

}  // namespace Kest
