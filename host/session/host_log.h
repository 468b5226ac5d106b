// The host's log: its own lines go to standard error, one at a time. The lines that the plugin
// hands on are only kept, for those who ask over HTTP: the plugin prints them itself.
//
// Threads: any; lines are never mixed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>
#include <string_view>

#include "base/mutex.h"

namespace Kest::Host {

// The levels of the C interface, and one above them all.
enum class LogLevel : int32_t { kOkay = 0, kWarning = 1, kError = 2, kAlways = 3, kNone = 4 };

// "okay", "warning", ...; a number that is no level counts as "always".
std::string_view LogLevelName(int32_t level);

class HostLog {
 public:
  // Own lines below `least` are dropped. `stream` outlives the log.
  HostLog(std::FILE* stream, LogLevel least) : stream_(stream), least_(least) {}

  // How many kept lines there are at most; the oldest go first.
  static constexpr size_t kMostKept = 1000;

  // Writes "tav-loot-host: <text>".
  void Write(LogLevel level, std::string_view text);
  // Keeps a finished line of the plugin, without the line feed at its end.
  void Append(std::string_view line);
  // The kept lines, oldest first.
  std::deque<std::string> Kept() const;

 private:
  std::FILE* const stream_;
  const LogLevel least_;
  mutable Mutex mutex_;  // also keeps own lines apart
  std::deque<std::string> kept_ KEST_GUARDED_BY(mutex_);
};

}  // namespace Kest::Host
