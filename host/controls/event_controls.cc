#include "host/controls/event_controls.h"

#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kLargestId = std::numeric_limits<uint64_t>::max();
constexpr size_t kStreamPieceBytes = size_t{64} * 1024;

// One reader's position in the events. The events themselves stay in the stream.
class EventReader : public HttpStream {
 public:
  // `controls`: how many controls were noted before; nothing when it is not to learn of them.
  EventReader(const EventStream* stream, uint64_t position, std::optional<uint64_t> controls)
      : stream_(stream), position_(position), controls_(controls) {}

  std::string Next() override {
    std::string text = stream_->Read(&position_, kStreamPieceBytes);
    return text.empty() && controls_ ? stream_->ReadControls(&*controls_) : text;
  }

 private:
  const EventStream* const stream_;
  uint64_t position_;
  std::optional<uint64_t> controls_;
};

}  // namespace

HttpResponse FollowStream(const EventStream* stream, const HostCall& call) {
  uint64_t position = stream->Held().last;  // without a position to resume from: what is new
  std::string last = call.request.lastEventId;
  if (last.empty()) last = call.target.Parameter("lastEventId").value_or("");
  if (!last.empty()) {
    const auto number = ParseNumber(last);
    if (!number)
      return ProblemResponse(400, "The last event id must be an integer from 0 to " +
                                      std::to_string(kLargestId) + ".");
    position = *number;
  }
  const std::string controls = call.target.Parameter("controls").value_or("false");
  if (controls != "true" && controls != "false") {
    return ProblemResponse(400, "controls must be true or false.");
  }
  std::optional<uint64_t> noted;
  if (controls == "true") noted = stream->ControlCount();
  HttpResponse response;
  response.stream = std::make_unique<EventReader>(stream, position, noted);
  return response;
}

ControlGroup EventControls(const EventStream* stream) {
  return {{"FollowEvents", [stream](const HostCall& call) { return FollowStream(stream, call); }}};
}

}  // namespace Kest::Host
