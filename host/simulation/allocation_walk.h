// The allocation walk: in each scenario, each allocation of the plugin fails once, in a run of its
// own. The plugin must go on, come to rest and, after the next retrieval, hold and publish what the
// platform has.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/simulation/simulation.h"

namespace Kest::Host {

struct WalkFinding {
  Finding finding;
  size_t runs = 0;     // that found it
  std::string script;  // of the first of them
};

struct WalkResult {
  size_t runs = 0;                    // each with one failed allocation
  std::vector<WalkFinding> findings;  // one for each check that failed
};

std::vector<std::string> WalkScenarios();

// REQUIRES: `scenario` is one of them. Also refuses blocks above a few sizes, in runs of their own.
WalkResult Walk(const std::string& scenario, const Simulation::Plugin& plugin);

}  // namespace Kest::Host
