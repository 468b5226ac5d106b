// The program's options.
#pragma once

#include <optional>
#include <string>

#include "host/host_options.h"

namespace Kest::Host {

struct CommandLine {
  HostOptions options;
  // The exit code when the program ends here: help was asked for, or an option was wrong (its
  // message has been written).
  std::optional<int> exitCode;
};

// Reads the options. `besideExecutable` is the folder of the running program; the plugin is looked
// for there unless an option names it.
CommandLine ReadCommandLine(int argc, const char* const* argv, const std::string& besideExecutable);

}  // namespace Kest::Host
