#include "host/record/recording_reader.h"

#include <utility>

#include "host/json/json_text.h"
#include "host/record/recording_writer.h"

namespace Kest::Host {
namespace {

constexpr size_t kMostShown = 200;  // bytes of a line
constexpr int kMostLevels = 16;     // of a line's JSON; those of a recording have five

// Cut where a character of UTF-8 ends.
std::string Shortened(std::string text) {
  if (text.size() <= kMostShown) return text;
  size_t end = kMostShown;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  text.resize(end);
  return text + "...";
}

}  // namespace

RecordingReader::RecordingReader(const std::string& path)
    : path_(path), file_(path, std::ios::binary) {}

Maybe<std::unique_ptr<RecordingReader>> RecordingReader::Open(const std::string& path) {
  std::unique_ptr<RecordingReader> reader(new RecordingReader(path));
  if (!reader->file_) return Failure{"Cannot read the recording " + path};
  auto head = reader->ReadLine();
  if (!head) return head.GetFailure();
  const Json line = head.GetValue().value_or(Json());
  const auto member = [&line](const char* name) {
    return line.is_object() ? line.value(name, Json()) : Json();
  };
  if (member("recording") != Json(kRecordingMaker)) {
    return reader->Fail("this is not a recording of tav-loot-host");
  }
  const Json format = member("format");
  if (format != Json(kRecordingFormat)) {
    return reader->Fail("the recording has the format " + WriteJson(format) +
                        "; this program reads " + std::to_string(kRecordingFormat));
  }
  return reader;
}

Failure RecordingReader::Fail(std::string_view what) const {
  return Failure{Place().append(": ").append(what)};
}

std::string RecordingReader::Place() const {
  return path_ + ":" + std::to_string(line_);
}

Maybe<std::optional<Json>> RecordingReader::ReadLine() {
  ++line_;
  if (!std::getline(file_, text_)) {
    if (file_.bad()) return Fail("cannot be read");
    return std::optional<Json>();
  }
  if (file_.eof()) return Fail("the line is torn: it has no end. Without it the rest can be used");
  if (IsDeeperThan(text_, kMostLevels)) return Fail("not a line of a recording: too deep");
  Json line = ParseJson(text_);
  if (line.is_discarded()) return Fail("not a line of a recording: no JSON");
  return std::optional<Json>(std::move(line));
}

Maybe<bool> RecordingReader::Next() {
  auto line = ReadLine();
  if (!line) return line.GetFailure();
  if (!line.GetValue()) return false;
  auto crossing = ToCrossing(*line.GetValue());
  if (!crossing) return Fail("not a line of a recording: " + crossing.GetFailure().text);
  if (crossing.GetValue().number <= current_.number) {
    return Fail("not a line of a recording: \"n\" must be above that of the line before");
  }
  current_ = std::move(crossing.GetValue());
  context_.push_back(Shortened(std::to_string(line_) + ": " + text_));
  if (context_.size() > kContext) context_.pop_front();
  return true;
}

}  // namespace Kest::Host
