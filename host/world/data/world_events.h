// What the emulated platform hands to the host: events to deliver, and responses.
#pragma once

#include <string>
#include <utility>

namespace Kest::Host {

struct WorldEvent {
  enum class Channel { kResource, kService };

  Channel channel = Channel::kResource;
  std::string name;     // as in plugin/host_interface.h: "OnJsonApiEvent_/tav-login/v1/session"
  std::string payload;  // JSON
  int delayMilliseconds = 0;
};

struct WorldResponse {
  int status = 200;
  std::string contentType;
  std::string body;
  std::string message;     // why, for a status of 400 or above
  std::string allow = {};  // the methods a 405 names
};

inline WorldResponse WorldJson(std::string body) {
  return {200, "application/json", std::move(body), ""};
}
inline WorldResponse WorldFailure(int status, std::string message) {
  return {status, "", "", std::move(message)};
}

}  // namespace Kest::Host
