#include "loot/model/register_resources.h"

#include "loot/model/loot_enums.h"
#include "loot/model/loot_resources.h"
#include "loot/model/recipe_resources.h"
#include "loot/model/sibling_resources.h"

namespace Kest::Client::Loot::Api {

void RegisterLootResources(TypeRegistry& registry) {
  RegisterLootEnums(registry);
  RegisterInventoryResources(registry);
  RegisterRecipeResources(registry);
  RegisterLootChangeResources(registry);
  RegisterSiblingResources(registry);
}

}  // namespace Kest::Client::Loot::Api
