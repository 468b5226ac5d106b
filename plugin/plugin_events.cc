#include "plugin/plugin_events.h"

#include "binding/convert/define_struct.h"
#include "binding/help/help_types.h"
#include "binding/types/type_registry.h"

namespace Kest {

namespace {

void RegisterTypes(TypeRegistry& registry) {
  DefineEnum<PluginManagerState>(registry, "PluginManagerState", "Kest")
      .Enumerator("NotReady", PluginManagerState::kNotReady)
      .Enumerator("PluginsInitialized", PluginManagerState::kPluginsInitialized)
      .Tags({kBuiltinTag, kPluginTag});
  DefineStruct<PluginManagerResource>(registry, "PluginManagerResource", "Kest")
      .Field<&PluginManagerResource::state>()
      .Tags({kBuiltinTag, kPluginTag});
  DefineEnum<ResourceEventType>(registry, "PluginResourceEventType", "Kest")
      .Enumerator("Create", ResourceEventType::kCreate)
      .Enumerator("Update", ResourceEventType::kUpdate)
      .Enumerator("Delete", ResourceEventType::kDelete)
      .Tags({kBuiltinTag, kPluginTag});
  DefineStruct<PluginResourceEvent>(registry, "PluginResourceEvent", "Kest")
      .Fields<&PluginResourceEvent::uri, &PluginResourceEvent::eventType,
              &PluginResourceEvent::data>()
      .Tags({kBuiltinTag, kPluginTag});
  DefineStruct<PluginSvdsEvent>(registry, "PluginSvdsEvent", "Kest")
      .Fields<&PluginSvdsEvent::clientId, &PluginSvdsEvent::subtopic, &PluginSvdsEvent::typeName,
              &PluginSvdsEvent::body>()
      .Tags({kBuiltinTag, kPluginTag});
  DefineStruct<PluginSvdsResponse>(registry, "PluginSvdsResponse", "Kest")
      .Fields<&PluginSvdsResponse::typeName, &PluginSvdsResponse::body>()
      .Tags({kBuiltinTag, kPluginTag});
  DefineStruct<PluginServiceProxyResponse>(registry, "PluginServiceProxyResponse", "Kest")
      .Fields<&PluginServiceProxyResponse::uuid, &PluginServiceProxyResponse::serviceName,
              &PluginServiceProxyResponse::methodName, &PluginServiceProxyResponse::payload,
              &PluginServiceProxyResponse::status, &PluginServiceProxyResponse::error>()
      .Tags({kBuiltinTag, kPluginTag});
}

void RegisterEvents(TypeRegistry& registry) {
  const TypeIdentifier response = IdentifyType<PluginServiceProxyResponse>(registry);
  registry.RegisterEvent(kJsonApiEvent, "Fired when a resource is changed.",
                         IdentifyType<PluginResourceEvent>(registry));
  registry.RegisterEvent(kSvdsEvent, "Fired when a message is received over the SVDS connection.",
                         IdentifyType<PluginSvdsEvent>(registry));
  registry.RegisterEvent(kServiceProxyUuidEvent,
                         "Fired when a uuid-based service proxy message is received.", response);
  registry.RegisterEvent(kServiceProxyMethodEvent,
                         "Fired when a method-based service proxy message is received.", response);
  registry.RegisterEvent(kServiceProxyAsyncEvent,
                         "Fired when an async service proxy message is received.", response);
}

}  // namespace

void RegisterPluginEvents(TypeRegistry& registry) {
  RegisterTypes(registry);
  RegisterEvents(registry);
}

}  // namespace Kest
