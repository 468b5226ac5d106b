#include "loot/loot_plugin.h"

#include "log/trace.h"
#include "loot/wire/register_resources.h"

namespace Kest::Client::Loot {

LootPlugin::LootPlugin(PluginRuntime& runtime, size_t itemsInSlice)
    : PluginBase(runtime),
      client_(Host(), Module(), FullName()),
      proxy_(Host(), Module(), client_, FullName()),
      inventory_(state_, itemsInSlice),
      views_(client_, state_, loot_),
      chests_(client_),
      publisher_(Module(), client_, {state_.store, state_.definitions, chests_, views_},
                 itemsInSlice),
      readiness_(client_, inventory_, publisher_),
      logos_(Module(), client_, state_.collections, readiness_),
      sources_(client_, state_.collections, readiness_),
      retrieval_(Module(), proxy_, loot_, {state_.definitions, inventory_, publisher_, logos_}),
      transactions_(Module(), proxy_, loot_, inventory_, publisher_, retrieval_),
      newPlayerChest_(Module(), proxy_, loot_, retrieval_),
      enablement_(client_, loot_, newPlayerChest_, views_, publisher_),
      session_(sources_, newPlayerChest_),
      grants_(client_, proxy_),
      messages_(grants_),
      configuration_(Module(), proxy_, client_),
      gameDataLoader_(client_, state_.gameData),
      subscriptions_(client_, proxy_,
                     {enablement_, readiness_, newPlayerChest_, session_, messages_, grants_}),
      endpoints_({loot_, state_, inventory_, publisher_, readiness_, retrieval_, newPlayerChest_,
                  configuration_, views_, transactions_, grants_, chests_}),
      explainer_({client_, loot_, state_, inventory_, readiness_, sources_, logos_, session_,
                  retrieval_, newPlayerChest_, grants_}) {}

void LootPlugin::RegisterApi() {
  Api::RegisterLootResources(TypeRegistry::Process());
  SVDS::RegisterLootDtos(TypeRegistry::Process(), &dtoClassNames_);
  endpoints_.Register(Api());
}

bool LootPlugin::Initialise() {
  proxy_.Start();
  subscriptions_.Start();
  gameDataLoader_.LoadAll();
  Trace("%s initialized", FullName().c_str());
  return true;
}

void LootPlugin::Shutdown() {
  proxy_.Finalise();
}

Response LootPlugin::Explain(std::string_view question) {
  return explainer_.Explain(question);
}

}  // namespace Kest::Client::Loot
