// What a recipe takes, what fits and what is missing; see explainer.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binding/tree/binding_property.h"
#include "loot/calls/forward.h"

namespace Kest::Client::Loot {

// Of the items of these loot ids, or of all that are held.
BindingProperty ExplainRecipe(std::string_view recipeName,
                              const std::optional<std::vector<std::string>>& lootIds,
                              const LootState& state, const LootRetrieval& retrieval,
                              const LootSwitch& loot);

}  // namespace Kest::Client::Loot
