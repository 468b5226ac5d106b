#include "host/session/host_log.h"

#include <iterator>

namespace Kest::Host {

std::string_view LogLevelName(int32_t level) {
  constexpr std::string_view kNames[] = {"okay", "warning", "error", "always"};
  const bool isKnown = level >= 0 && static_cast<size_t>(level) < std::size(kNames);
  return kNames[isKnown ? level : 3];
}

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
