#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "host/program/terminal.h"

namespace Kest::Host {

bool ShowsColours(std::FILE* stream) {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string_view(value == nullptr ? "" : value);
  };
  return variable("NO_COLOR").empty() && variable("TERM") != "dumb" && isatty(fileno(stream)) == 1;
}

}  // namespace Kest::Host
