// The program: its subcommands and options, read from the command line and carried out.
#pragma once

#include <string>

namespace Kest::Host {

// Returns the exit status. `folder` is that of the executable, with its last separator.
int RunProgram(int argc, const char* const* argv, std::string folder);

}  // namespace Kest::Host
