#include "host/session/host_log.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "host/session/standard_error_mute.h"

namespace Kest::Host {
namespace {

struct LevelRow {
  std::string_view name;
  std::string_view label;   // as the plugin's own lines have it
  std::string_view colour;  // a control sequence; empty: as it is
};

// By LogLevel.
constexpr LevelRow kLevels[] = {{"okay", "  OKAY", ""},
                                {"warning", "  WARN", "\x1b[33m"},
                                {"error", " ERROR", "\x1b[31m"},
                                {"always", "ALWAYS", ""}};
constexpr std::string_view kColourEnd = "\x1b[0m";

const LevelRow& RowOf(int32_t level) {
  const bool isKnown = level >= 0 && static_cast<size_t>(level) < std::size(kLevels);
  return kLevels[isKnown ? static_cast<size_t>(level) : std::size(kLevels) - 1];
}

// "2024-05-06T07:08:09.010", in local time.
std::string Timestamp(int64_t milliseconds) {
  const LocalTime time = LocalTimeAt(milliseconds);
  std::array<char, 80> text = {};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d", time.year,
                time.month, time.day, time.hour, time.minute, time.second, time.millisecond);
  return text.data();
}

}  // namespace

std::string_view LogLevelName(int32_t level) {
  return RowOf(level).name;
}

std::string ColouredLine(LogLevel level, std::string_view line) {
  const std::string_view colour = RowOf(static_cast<int32_t>(level)).colour;
  std::string coloured(colour);
  coloured.append(line);
  return colour.empty() ? coloured : coloured.append(kColourEnd);
}

bool HostLog::Shows(LogLevel level) const {
  if (settings_.least == LogLevel::kNone) return false;
  return settings_.onlyErrors ? level == LogLevel::kError : level >= settings_.least;
}

void HostLog::Print(LogLevel level, std::string_view label, std::string_view text) {
  std::string line = Timestamp(clock_()) + "| ";
  line.append(RowOf(static_cast<int32_t>(level)).label).append("| | ").append(label).append(text);
  const MutexLock lock(mutex_);
  PrintLocked(level, line);
}

void HostLog::PrintLocked(LogLevel level, std::string_view line) {
  std::string coloured;
  if (settings_.isColoured && !settings_.onlyErrors) line = coloured = ColouredLine(level, line);
  if (waiting_) {
    waiting_->emplace_back(line);
  } else {
    EmitLocked(line);
  }
}

void HostLog::EmitLocked(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), stream_);
  std::fputc('\n', stream_);
  std::fflush(stream_);
}

void HostLog::RunUnprinted(const std::function<void()>& work) {
  if (Shows(LogLevel::kAlways)) return work();
  // Not under the lock: the plugin's logger has its own, and writes to this log under it.
  struct Pause {
    explicit Pause(HostLog* of) : log(of) { log->Wait(); }
    ~Pause() { log->GoOn(); }
    HostLog* const log;
  };
  const Pause pause(this);
  const StandardErrorMute mute;  // ends first
  work();
}

void HostLog::Wait() {
  const MutexLock lock(mutex_);
  waiting_.emplace();
}

void HostLog::GoOn() {
  const MutexLock lock(mutex_);
  for (const std::string& line : *waiting_) EmitLocked(line);
  waiting_.reset();
}

void HostLog::Write(LogLevel level, std::string_view text) {
  if (listener_) listener_(level, text);
  if (Shows(level)) Print(level, "tav-loot-host: ", text);
}

void HostLog::WriteRequest(std::string_view method, std::string_view target, int status,
                           int64_t milliseconds) {
  if (!settings_.requests || settings_.least == LogLevel::kNone) return;
  std::string text(method);
  text.append(" ").append(target).append(" " + std::to_string(status) + " ");
  // What a client sends must not look like another line.
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  Print(LogLevel::kOkay, text, std::to_string(milliseconds) + " ms");
}

void HostLog::Append(LogLevel level, std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  const MutexLock lock(mutex_);
  if (printsPlugin_ && Shows(level)) PrintLocked(level, line);
  kept_.emplace_back(line);
  if (kept_.size() > kMostKept) kept_.pop_front();
}

std::deque<std::string> HostLog::Kept() const {
  const MutexLock lock(mutex_);
  return kept_;
}

}  // namespace Kest::Host
