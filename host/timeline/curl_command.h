// A client's request as a command of a POSIX shell.
#pragma once

#include <string>

#include "host/timeline/row.h"

namespace Kest::Host {

// REQUIRES: `request` is a request or a control. A body of which not all is kept is left to a file:
// the command reads "@body".
std::string CurlCommand(const TimelineRow& request);

}  // namespace Kest::Host
