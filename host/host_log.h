// The host's log: one line at a time to standard error, the plugin's and the host's own.
//
// Threads: any; lines are never mixed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string_view>

namespace Kest::Host {

// The levels of the C interface, and one above them all.
enum class LogLevel : int32_t { kOkay = 0, kWarning = 1, kError = 2, kAlways = 3, kNone = 4 };

class HostLog {
 public:
  // Lines below `least` are dropped. `stream` outlives the log.
  HostLog(std::FILE* stream, LogLevel least) : stream_(stream), least_(least) {}

  // Writes a finished line as it stands; one line feed is added when it has none.
  void Line(LogLevel level, std::string_view line);
  // Writes "tav-loot-host: <text>".
  void Say(LogLevel level, std::string_view text);

 private:
  std::FILE* const stream_;
  const LogLevel least_;
  std::mutex mutex_;
};

}  // namespace Kest::Host
