// Registers every enumeration and structure that is published, or read from another plugin, in the
// one order the API description shows.
#pragma once

namespace Kest {
class TypeRegistry;
}

namespace Kest::Client::Loot::Api {

// Runs once, at the plugin's API registration, before any endpoint names a type.
void RegisterLootResources(TypeRegistry& registry);

}  // namespace Kest::Client::Loot::Api
