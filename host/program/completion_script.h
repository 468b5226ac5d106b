// A script for bash that completes the program's arguments, made from the definitions of its
// options. The type name of an option says what it takes: see host_option_definitions.h.
#pragma once

#include <CLI/App.hpp>
#include <string>

namespace Kest::Host {

std::string BashCompletion(const CLI::App& program);

}  // namespace Kest::Host
