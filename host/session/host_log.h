// The host's log: lines of its own and of the plugin go to standard error, one at a time and each
// with its time. The plugin's newest lines are also kept, for those who ask over HTTP.
//
// Threads: any; lines are never mixed.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "base/platform.h"

namespace Kest::Host {

// The levels of the C interface, and one above them all.
enum class LogLevel : int32_t { kOkay = 0, kWarning = 1, kError = 2, kAlways = 3, kNone = 4 };

// "okay", "warning", ...; a number that is no level counts as "always".
std::string_view LogLevelName(int32_t level);

// `line` between the control sequences that colour it on a terminal: warnings and errors.
std::string ColouredLine(LogLevel level, std::string_view line);

// What is printed.
struct LogSettings {
  LogLevel least = LogLevel::kOkay;  // lines below are dropped; kNone: all are
  bool onlyErrors = false;
  bool isVerbose = false;   // the plugin writes its lines of level okay too
  bool requests = false;    // a line for each request
  bool isColoured = false;  // for a terminal; not where only errors are printed
};

class HostLog {
 public:
  // `stream` outlives the log.
  HostLog(std::FILE* stream, const LogSettings& settings)
      : stream_(stream),
        settings_(settings),
        pluginLevel_(settings.isVerbose ? LogLevel::kOkay : LogLevel::kWarning) {}
  HostLog(std::FILE* stream, LogLevel least) : HostLog(stream, LogSettings{.least = least}) {}

  // How many kept lines there are at most; the oldest go first.
  static constexpr size_t kMostKept = 1000;

  const LogSettings& settings() const { return settings_; }
  // Takes times from `clock`, milliseconds since 1970. Set it before others use the log.
  void SetClock(std::function<int64_t()> clock) { clock_ = std::move(clock); }
  // `listener` gets each line of the host itself, also those that are not printed, on the thread
  // that writes it. Set it as the clock.
  void SetListener(std::function<void(LogLevel level, std::string_view text)> listener) {
    listener_ = std::move(listener);
  }
  // Whether the plugin leaves printing its lines to this log.
  void SetPrintsPlugin(bool prints) { printsPlugin_ = prints; }

  // Runs `work`, whose own prints to standard error are lost unless lines of level `always` are
  // shown: a library prints its first lines before it can learn where to. Meanwhile the lines of
  // other threads wait.
  void RunUnprinted(const std::function<void()>& work);
  // The least level of the lines that plugins are to write.
  LogLevel pluginLevel() const { return pluginLevel_; }
  void SetPluginLevel(LogLevel level) { pluginLevel_ = level; }

  // Writes "<time>| <level>| | tav-loot-host: <text>".
  void Write(LogLevel level, std::string_view text);
  // Writes a line for a request that was responded to, if they are asked for.
  void WriteRequest(std::string_view method, std::string_view target, int status,
                    int64_t milliseconds);
  // Keeps a finished line of the plugin, without the line feed at its end, and prints it when the
  // plugin does not.
  void Append(LogLevel level, std::string_view line);
  // The kept lines, oldest first.
  std::deque<std::string> Kept() const;

 private:
  bool Shows(LogLevel level) const;
  void Print(LogLevel level, std::string_view label, std::string_view text);
  void PrintLocked(LogLevel level, std::string_view line) KEST_REQUIRES(mutex_);
  void EmitLocked(std::string_view line) KEST_REQUIRES(mutex_);
  // From Wait to GoOn lines are kept back.
  void Wait() KEST_EXCLUDES(mutex_);
  void GoOn() KEST_EXCLUDES(mutex_);

  std::FILE* const stream_;
  const LogSettings settings_;
  std::function<int64_t()> clock_ = WallClockMilliseconds;
  std::function<void(LogLevel level, std::string_view text)> listener_;
  std::atomic<bool> printsPlugin_ = false;
  std::atomic<LogLevel> pluginLevel_;
  mutable Mutex mutex_;  // also keeps lines apart
  std::deque<std::string> kept_ KEST_GUARDED_BY(mutex_);
  std::optional<std::vector<std::string>> waiting_ KEST_GUARDED_BY(mutex_);  // to be printed
};

}  // namespace Kest::Host
