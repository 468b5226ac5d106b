// The types and events every plugin of this host knows. Field and enumerator names and their order
// are wire format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest {

class TypeRegistry;

enum class PluginManagerState : int32_t { kNotReady = 0, kPluginsInitialized = 1 };

struct PluginManagerResource {
  PluginManagerState state = PluginManagerState::kNotReady;
};

// What happened to a resource. Followers treat kCreate and kUpdate alike; a kDelete has no data.
enum class ResourceEventType : int32_t { kCreate = 0, kUpdate = 1, kDelete = 2 };

struct PluginResourceEvent {
  std::string uri;
  ResourceEventType eventType = ResourceEventType::kCreate;
  BindingProperty data;
};

// A platform message.
struct PluginSvdsEvent {
  std::string clientId;
  std::string subtopic;
  std::string typeName;
  BindingProperty body;
};

struct PluginSvdsResponse {
  std::string typeName;
  BindingProperty body;
};

// The response of a platform service. `payload` is the method's result as JSON; a non-empty `error`
// is the reason why there is none.
struct PluginServiceProxyResponse {
  std::string uuid;
  std::string serviceName;
  std::string methodName;
  std::string payload;
  std::string status;
  std::string error;
};

inline constexpr std::string_view kJsonApiEvent = "OnJsonApiEvent";
inline constexpr std::string_view kSvdsEvent = "OnSvdsEvent";
inline constexpr std::string_view kServiceProxyUuidEvent = "OnServiceProxyUuidEvent";
inline constexpr std::string_view kServiceProxyMethodEvent = "OnServiceProxyMethodEvent";
inline constexpr std::string_view kServiceProxyAsyncEvent = "OnServiceProxyAsyncEvent";

// Registers the types, then the events, in their fixed order. Repeating it changes nothing.
void RegisterPluginEvents(TypeRegistry& registry);

}  // namespace Kest
