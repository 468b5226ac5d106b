// What a program's subcommands and options are, for texts that are made from their definitions.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace Kest::Host {

std::vector<const CLI::App*> SubcommandsOf(const CLI::App& app);

// "--name" of each long name.
std::vector<std::string> LongNamesOf(const CLI::Option& option);

}  // namespace Kest::Host
