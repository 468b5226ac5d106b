// LootSwitch: the two configuration values that enable loot together.
#pragma once

#include "loot/model/condition.h"

namespace Kest::Client::Loot {

struct LootSwitch {
  bool configEnabled = false;  // "Enabled"
  bool clientEnabled = false;  // "PxhEnabled"

  constexpr Conditions<2> EnabledConditions() const {
    return {{{"configEnabled", configEnabled, "The configuration value \"Enabled\" is true.",
              "The configuration value \"Enabled\" is not true."},
             {"clientEnabled", clientEnabled, "The configuration value \"PxhEnabled\" is true.",
              "The configuration value \"PxhEnabled\" is not true."}}};
  }
  constexpr bool Enabled() const { return AllHold(EnabledConditions()); }
};

}  // namespace Kest::Client::Loot
