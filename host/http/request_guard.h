// Refuses requests that a web page on another site could have caused: the host serves the player's
// account to all that reach its port, and a browser reaches loopback too.
//
// Host header:  must name this machine, so that a foreign name that was made to resolve to loopback
//               is turned away.
// Origin:       a request that may change something must come from a loopback page, or from no
//               page at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

class RequestGuard {
 public:
  // `address` is the address the host listens on; it may be named besides the loopback names.
  explicit RequestGuard(std::string address) : address_(std::move(address)) {}

  // The 403 (or 400 without a Host header) for a request that is not let in, otherwise nothing.
  // Needs the request's head only.
  std::optional<HttpResponse> Refuse(const HttpRequest& request) const;

 private:
  bool NamesThisMachine(std::string_view hostAndPort) const;

  const std::string address_;
};

}  // namespace Kest::Host
