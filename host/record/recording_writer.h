// The file of a recording: one JSON document a line, each written by itself, so that the file ends
// at a line's end whenever the process ends.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/maybe_type.h"

namespace Kest::Host {

// What the first line of a recording says.
inline constexpr std::string_view kRecordingMaker = "tav-loot-host";
inline constexpr int64_t kRecordingFormat = 1;

// Threads: no lock; the owner guards it.
class RecordingWriter {
 public:
  // Makes the file and writes its first line. A file that has something in it is kept: a failure.
  static Maybe<std::unique_ptr<RecordingWriter>> Create(const std::string& path);
  ~RecordingWriter();
  RecordingWriter(const RecordingWriter&) = delete;
  RecordingWriter& operator=(const RecordingWriter&) = delete;

  // False: the line cannot be written; the file ends with the one before it, for good.
  bool Write(std::string line);

 private:
  RecordingWriter(std::string path, std::FILE* file) : path_(std::move(path)), file_(file) {}
  void Close();

  const std::string path_;
  std::FILE* file_;  // null once a line could not be written
  uint64_t bytes_ = 0;
};

}  // namespace Kest::Host
