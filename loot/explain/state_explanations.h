// Explanations of the plugin's state as a whole; see explainer.h.
#pragma once

#include "binding/tree/binding_property.h"
#include "loot/calls/forward.h"

namespace Kest::Client::Loot {

BindingProperty ExplainEnabled(const LootSwitch& loot);
BindingProperty ExplainReady(const SourceReadiness& readiness, const CollectionSources& sources,
                             const TournamentLogos& logos, const PlayerSession& session);
BindingProperty ExplainRetrieval(const LootRetrieval& retrieval, const LootSwitch& loot);
BindingProperty ExplainChest(const NewPlayerChest& chest);
BindingProperty ExplainGrants(const GrantNotices& grants);

}  // namespace Kest::Client::Loot
