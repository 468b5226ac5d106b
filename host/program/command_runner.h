// Runs another program on behalf of this one: it has this process's standard streams and
// environment, and the signals that ask this process to end.
//
// Threads: the one that made it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/maybe_type.h"

namespace Kest::Host {

class CommandRunner {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  // From here on a signal no longer ends this process: it waits for Run, and goes to the command.
  // REQUIRES: no other thread runs yet, so that all of them leave the signals to this one.
  CommandRunner();

  // Runs command[0], looked for as a shell does, with the others as its arguments and `variables`
  // in its environment. Returns its exit status when it has ended, 128 and the number of the signal
  // for one that a signal ended, or that came before it began. The failure says why it cannot run.
  // REQUIRES: `command` is not empty. Called once.
  Maybe<int> Run(const std::vector<std::string>& command, const Variables& variables);
};

}  // namespace Kest::Host
