// Makes the steps of a seed: users, a platform and a network that do what they may at any time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/simulation/step.h"

namespace Kest::Host {

struct ScriptOptions {
  uint64_t seed = 1;
  size_t steps = 300;
  bool failMemory = false;  // allocations of the plugin fail, too
};

// The same for the same options, everywhere. The last step is a quiet one.
Script MakeScript(const ScriptOptions& options);

}  // namespace Kest::Host
