// Reads a recording, line by line.
//
// Threads: no lock; one owner.
#pragma once

#include <cstdint>
#include <deque>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "base/maybe_type.h"
#include "host/record/crossing.h"

namespace Kest::Host {

class RecordingReader {
 public:
  // How many lines Context returns at most.
  static constexpr size_t kContext = 8;

  // Opens the file and reads its first line.
  static Maybe<std::unique_ptr<RecordingReader>> Open(const std::string& path);

  // Reads the next crossing, which Current returns from then on. False: that was the last one. A
  // failure names the file and the line: it is torn, or not of a recording.
  Maybe<bool> Next();
  // REQUIRES: the last Next returned true.
  const Crossing& Current() const { return current_; }
  // "FILE:LINE", of the current crossing.
  std::string Place() const;
  // The current crossing and those before it, shortened, each with its number.
  const std::deque<std::string>& Context() const { return context_; }

 private:
  explicit RecordingReader(const std::string& path);
  // The next line; nothing at the end.
  Maybe<std::optional<Json>> ReadLine();
  Failure Fail(std::string_view what) const;

  const std::string path_;
  std::ifstream file_;
  uint64_t line_ = 0;
  std::string text_;  // of the line
  Crossing current_;
  std::deque<std::string> context_;
};

}  // namespace Kest::Host
