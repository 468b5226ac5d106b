#include "host/controls/event_controls.h"

#include <memory>
#include <string>

#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

constexpr size_t kStreamPieceBytes = size_t{64} * 1024;

// One reader's position in the events. The events themselves stay in the stream.
class EventReader : public HttpStream {
 public:
  EventReader(const EventStream* stream, uint64_t position)
      : stream_(stream), position_(position) {}

  std::string Next() override { return stream_->Read(&position_, kStreamPieceBytes); }

 private:
  const EventStream* const stream_;
  uint64_t position_;
};

}  // namespace

HttpResponse FollowStream(const EventStream* stream, const HostCall& call) {
  uint64_t position = stream->Held().last;  // without a position to resume from: what is new
  std::string last = call.request.lastEventId;
  if (last.empty()) last = call.target.Parameter("lastEventId").value_or("");
  if (!last.empty()) {
    const auto number = ParseNumber(last);
    if (!number) return ProblemResponse(400, "The last event id must be a number.");
    position = *number;
  }
  HttpResponse response;
  response.stream = std::make_unique<EventReader>(stream, position);
  return response;
}

ControlGroup EventControls(const EventStream* stream) {
  return {{"FollowEvents", [stream](const HostCall& call) { return FollowStream(stream, call); }}};
}

}  // namespace Kest::Host
