// The program's manual page, made from the definitions of its options. The lines of a footer that
// are indented are examples and keep their form; the others are filled as text.
#pragma once

#include <CLI/App.hpp>
#include <string>

namespace Kest::Host {

// As man reads it. It does not depend on where the program is.
std::string ManualPage(const CLI::App& program);

}  // namespace Kest::Host
