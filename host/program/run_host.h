// What the subcommands that run a host share.
#pragma once

#include "base/maybe_type.h"

namespace Kest::Host {

// Reports why the host did not start or stop and returns the exit status. Does not come back when
// tasks of the plugin still run: nothing may be taken from under them.
int FailHost(const Failure& failure);

}  // namespace Kest::Host
