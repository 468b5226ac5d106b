// The program's options.
#pragma once

#include <string>

#include "host/development_host.h"

namespace Kest::Host {

struct CommandLine {
  HostOptions options;
  // Set when the program ends here: help was asked for, or an option was wrong (its text has been
  // written).
  bool ends = false;
  int exitCode = 0;
};

// Reads the options. `besideExecutable` is the folder of the running program; the plugin is looked
// for there unless an option names it.
CommandLine ReadCommandLine(int argc, const char* const* argv, const std::string& besideExecutable);

}  // namespace Kest::Host
