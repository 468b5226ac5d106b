// Drives a plugin with a recording: the host's calls are made again in the recorded order, and what
// the plugin calls and returns is compared with what it did when it was recorded.
//
// Everything runs on the calling thread: of what the recording holds only one thing ran at a time.
#pragma once

#include <cstdint>
#include <string>

#include "base/maybe_type.h"

namespace Kest::Host {

struct ReplayOptions {
  std::string recording;
  std::string plugin;       // the library
  bool comparesLog = true;  // the lines that the plugin logs
};

struct ReplayOutcome {
  uint64_t crossings = 0;       // that were equal
  uint64_t sessions = 0;        // loads of the library
  std::string difference = {};  // a report of the first one; empty: there is none
  bool isCut = false;           // the recording ends before the plugin does
  // Tasks of the plugin still run: nothing may be taken from under them, the process has to end at
  // once.
  bool isAbandoned = false;
};

// A failure: the recording cannot be read or carried out, or the library not be loaded.
Maybe<ReplayOutcome> Replay(const ReplayOptions& options);

}  // namespace Kest::Host
