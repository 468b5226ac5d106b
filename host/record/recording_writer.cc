#include "host/record/recording_writer.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/json/json.h"

namespace Kest::Host {

Maybe<std::unique_ptr<RecordingWriter>> RecordingWriter::Create(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_regular_file(path, error) && !std::filesystem::is_empty(path, error)) {
    return Failure{"Cannot write the recording " + path +
                   ": the file is not empty; remove it, or name another one"};
  }
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) {
    return Failure{"Cannot write the recording " + path + ": " + std::strerror(errno)};
  }
  std::setvbuf(file, nullptr, _IONBF, 0);
  std::unique_ptr<RecordingWriter> writer(new RecordingWriter(path, file));
  const Json head = {{"recording", kRecordingMaker}, {"format", kRecordingFormat}};
  if (!writer->Write(WriteJson(head))) {
    return Failure{"Cannot write the recording " + path + ": " + std::strerror(errno)};
  }
  return writer;
}

RecordingWriter::~RecordingWriter() {
  Close();
}

bool RecordingWriter::Write(std::string line) {
  if (file_ == nullptr) return false;
  line += '\n';
  if (std::fwrite(line.data(), 1, line.size(), file_) == line.size()) {
    bytes_ += line.size();
    return true;
  }
  const int reason = errno;
  Close();
  std::error_code error;  // what was written of the line goes, if it can
  std::filesystem::resize_file(path_, bytes_, error);
  errno = reason;
  return false;
}

void RecordingWriter::Close() {
  if (file_ != nullptr) std::fclose(std::exchange(file_, nullptr));
}

}  // namespace Kest::Host
