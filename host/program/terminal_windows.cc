#include <io.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>

#include "host/program/terminal.h"

namespace Kest::Host {

// A console that does not know the sequences refuses the mode.
bool ShowsColours(std::FILE* stream) {
  const char* const unwanted = std::getenv("NO_COLOR");
  if (unwanted != nullptr && *unwanted != '\0') return false;
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace Kest::Host
