// LootSwitch: the two configuration values that enable loot together.
#pragma once

namespace Kest::Client::Loot {

struct LootSwitch {
  bool configEnabled = false;  // "Enabled"
  bool clientEnabled = false;  // "PxhEnabled"

  bool Enabled() const { return configEnabled && clientEnabled; }
};

}  // namespace Kest::Client::Loot
