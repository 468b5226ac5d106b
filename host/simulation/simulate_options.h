// The options of the program "simulate".
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kest::Host {

struct SimulateOptions {
  uint64_t firstSeed = 1;
  uint64_t lastSeed = 100;
  size_t steps = 300;
  bool failMemory = false;
  bool trace = false;
  bool log = false;
  std::string walk;      // a scenario of the allocation walk, or "all"; empty: none
  std::string replay;    // a script's file; empty: seeds
  std::string expect;    // a file with the expected hash of the seeds; empty: any
  std::string findings;  // a folder for the scripts of findings; empty: none are written
};

struct SimulateCommandLine {
  SimulateOptions options;
  // The exit code when the program ends here.
  std::optional<int> exitCode;
};

SimulateCommandLine ReadSimulateCommandLine(int argc, const char* const* argv);

}  // namespace Kest::Host
