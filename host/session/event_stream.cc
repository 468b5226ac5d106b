#include "host/session/event_stream.h"

#include <algorithm>
#include <utility>

#include "host/json/json.h"
#include "host/json/json_text.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kFrameEnd = "\n\n";

// JSON holds raw line ends only between its tokens; the stream's own lines end there.
void AppendOnOneLine(std::string* text, std::string_view json) {
  for (const char c : json) text->push_back(c == '\n' || c == '\r' ? ' ' : c);
}

std::string BeginOfData(std::string_view uri) {
  return "{\"uri\":" + JsonString(uri) + ",\"eventType\":";
}

std::string MakeData(std::string_view uri, std::string_view eventType, std::string_view json) {
  std::string data = BeginOfData(uri) + JsonString(eventType);
  if (!json.empty()) {
    data += ",\"data\":";
    AppendOnOneLine(&data, json);
  }
  return data += '}';
}

// Events `from` to `to` are lost to the reader. The id lets it resume after them.
std::string MakeGap(uint64_t from, uint64_t to, bool restarted) {
  return "id: " + std::to_string(to) + "\nevent: gap\ndata: {\"from\":" + std::to_string(from) +
         ",\"to\":" + std::to_string(to) + ",\"restarted\":" + (restarted ? "true" : "false") +
         "}\n\n";
}

}  // namespace

uint64_t EventStream::Append(std::string_view uri, std::string_view eventType,
                             std::string_view json) {
  return AppendFrame("resource", MakeData(uri, eventType, json));
}

void EventStream::AppendReset() {
  AppendFrame("reset", "{}");
}

uint64_t EventStream::AppendFrame(std::string_view event, std::string_view data) {
  uint64_t id = 0;
  {
    const MutexLock lock(mutex_);
    id = last_ + 1;
    std::string frame = "id: " + std::to_string(id);
    frame.append("\nevent: ").append(event).append("\ndata: ").append(data).append(kFrameEnd);
    frames_.push_back(std::move(frame));
    bytes_ += frames_.back().size();
    last_ = id;
    while (frames_.size() > limits_.events || (bytes_ > limits_.bytes && frames_.size() > 1)) {
      bytes_ -= frames_.front().size();
      frames_.pop_front();
    }
  }
  if (listener_) listener_();
  return id;
}

std::string EventStream::Read(uint64_t* position, size_t atMost) const {
  const MutexLock lock(mutex_);
  const uint64_t first = last_ - frames_.size() + 1;
  std::string text;
  if (*position > last_) {
    *position = first - 1;
    text = MakeGap(std::min<uint64_t>(1, *position), *position, true);
  } else if (*position + 1 < first) {
    text = MakeGap(*position + 1, first - 1, false);
    *position = first - 1;
  }
  for (; *position < last_; ++*position) {
    const std::string& frame = frames_[*position + 1 - first];
    if (!text.empty() && text.size() + frame.size() > atMost) break;
    text.append(frame);
  }
  return text;
}

void EventStream::NoteControl(std::string_view operationId) {
  {
    const MutexLock lock(mutex_);
    auto place = controls_.find(operationId);
    if (place == controls_.end()) place = controls_.emplace(operationId, 0).first;
    place->second = ++controlCount_;
  }
  if (listener_) listener_();
}

std::string EventStream::ReadControls(uint64_t* seen) const {
  const MutexLock lock(mutex_);
  if (*seen == controlCount_) return {};
  Json ids = Json::array();
  for (const auto& [operationId, count] : controls_) {
    if (count > *seen) ids.push_back(operationId);
  }
  *seen = controlCount_;
  std::string text = "event: control\ndata: ";
  text.append(WriteJson(Json{{"operationIds", std::move(ids)}})).append(kFrameEnd);
  return text;
}

uint64_t EventStream::ControlCount() const {
  const MutexLock lock(mutex_);
  return controlCount_;
}

std::optional<PublishedEvent> EventStream::Find(uint64_t* position, std::string_view uri) const {
  constexpr std::string_view kBegin = "\nevent: resource\ndata: ";
  const std::string wanted = uri.empty() ? "" : BeginOfData(uri);
  const MutexLock lock(mutex_);
  const uint64_t first = last_ - frames_.size() + 1;
  while (*position < last_) {
    const std::string_view frame = frames_[++*position - first];
    const size_t begin = frame.find(kBegin);
    if (begin == std::string_view::npos) continue;
    const std::string_view data = frame.substr(begin + kBegin.size());
    if (!data.starts_with(wanted)) continue;
    return PublishedEvent{*position, std::string(data.substr(0, data.size() - kFrameEnd.size()))};
  }
  return std::nullopt;
}

EventStream::Range EventStream::Held() const {
  const MutexLock lock(mutex_);
  return {last_ - frames_.size() + 1, last_};
}

}  // namespace Kest::Host
