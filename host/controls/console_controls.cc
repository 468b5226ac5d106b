#include "host/controls/console_controls.h"

#include "host/console/console_files.h"

namespace Kest::Host {

ControlGroup ConsoleControls() {
  return {{"GetConsoleFile", [](const HostCall& call) {
             return ConsoleFile(call.path.find("file")->second, call.request);
           }}};
}

}  // namespace Kest::Host
