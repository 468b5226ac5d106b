// Runs scripts in processes of their own and makes findings small.
#pragma once

#include <optional>
#include <string>

#include "host/simulation/simulation.h"
#include "host/simulation/step.h"

namespace Kest::Host {

struct ScriptResult {
  std::optional<Finding> finding;  // a crash is one, too
  size_t step = 0;
  uint64_t hash = 0;
  bool allocationFailed = false;
};

ScriptResult RunScript(const Script& script, const Simulation::Plugin& plugin);

// Leaves out steps as long as the same check fails, by runs of halving length.
Script ShrinkScript(Script script, const std::string& check, const Simulation::Plugin& plugin);

// Three lines that say what was expected and found, and where.
std::string DescribeFinding(const Finding& finding, size_t step);

}  // namespace Kest::Host
