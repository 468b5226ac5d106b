#include "host/session/host_log.h"

namespace Kest::Host {

void HostLog::Write(LogLevel level, std::string_view text) {
  if (level < least_ || least_ == LogLevel::kNone) return;
  const MutexLock lock(mutex_);
  std::fputs("tav-loot-host: ", stream_);
  std::fwrite(text.data(), 1, text.size(), stream_);
  std::fputc('\n', stream_);
  std::fflush(stream_);
}

void HostLog::Append(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  const MutexLock lock(mutex_);
  kept_.emplace_back(line);
  if (kept_.size() > kMostKept) kept_.pop_front();
}

std::deque<std::string> HostLog::Kept() const {
  const MutexLock lock(mutex_);
  return kept_;
}

}  // namespace Kest::Host
