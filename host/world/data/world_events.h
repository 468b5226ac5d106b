// What the emulated platform hands to the host: events to deliver, and responses.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "host/cause/cause.h"

namespace Kest::Host {

// The name of a resource's event begins with this; the path follows.
inline constexpr std::string_view kResourceEventPrefix = "OnJsonApiEvent_";

struct WorldEvent {
  enum class Channel { kResource, kService };

  Channel channel = Channel::kResource;
  std::string name;     // as in plugin/host_interface.h: "OnJsonApiEvent_/tav-login/v1/session"
  std::string payload;  // JSON
  int delayMilliseconds = 0;
  // Of a service event: delivered before the response of the request that caused it.
  bool comesFirst = false;
  uint64_t cause = CurrentCause();
};

struct WorldResponse {
  int status = 200;
  std::string contentType;
  std::string body;
  std::string message;     // why, for a status of 400 or above
  std::string allow = {};  // the methods a 405 names
  // Of a request of the plugin. A response that is held comes among the released ones, or never.
  int delayMilliseconds = 0;
  bool isLost = false;
  uint64_t heldAs = 0;
};

// The response to a request that was held.
struct ReleasedResponse {
  uint64_t heldAs;
  WorldResponse response;
};

inline WorldResponse WorldJson(std::string body) {
  return {.contentType = "application/json", .body = std::move(body), .message = {}};
}
inline WorldResponse WorldFailure(int status, std::string message) {
  return {.status = status, .contentType = {}, .body = {}, .message = std::move(message)};
}

}  // namespace Kest::Host
