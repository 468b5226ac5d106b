#include "loot/wire/register_resources.h"

#include "loot/wire/loot_enums.h"
#include "loot/wire/loot_resources.h"
#include "loot/wire/recipe_resources.h"
#include "loot/wire/sibling_resources.h"

namespace Kest::Client::Loot::Api {

void RegisterLootResources(TypeRegistry& registry) {
  RegisterLootEnums(registry);
  RegisterInventoryResources(registry);
  RegisterRecipeResources(registry);
  RegisterLootChangeResources(registry);
  RegisterSiblingResources(registry);
}

}  // namespace Kest::Client::Loot::Api
