#include "host/host_log.h"

#include <string>

namespace Kest::Host {

void HostLog::Line(LogLevel level, std::string_view line) {
  if (level < least_ || least_ == LogLevel::kNone) return;
  const std::lock_guard lock(mutex_);
  std::fwrite(line.data(), 1, line.size(), stream_);
  if (!line.ends_with('\n')) std::fputc('\n', stream_);
  std::fflush(stream_);
}

void HostLog::Say(LogLevel level, std::string_view text) {
  Line(level, std::string("tav-loot-host: ").append(text));
}

}  // namespace Kest::Host
