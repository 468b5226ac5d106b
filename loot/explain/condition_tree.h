// Conditions as trees, for explanations.
#pragma once

#include <span>

#include "binding/tree/tree_literals.h"
#include "loot/model/condition.h"

namespace Kest::Client::Loot {

// [{"name", "holds", "reason"}], in their order.
BindingProperty ConditionsTree(std::span<const Condition> conditions);

}  // namespace Kest::Client::Loot
