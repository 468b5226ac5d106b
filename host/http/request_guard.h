// Refuses requests that a web page on another site could have caused: the host serves the player's
// account to all that reach its port, and a browser reaches loopback too.
//
// Host header:  must name this machine, so that a foreign name that was made to resolve to loopback
//               is turned away.
// Origin:       a request that may change something must come from a loopback page, from a page of
//               an origin that the host's options name, or from no page at all. These pages may
//               also read what is returned; a browser keeps it from others.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/http/http_message.h"

namespace Kest::Host {

// `text` as browsers write that origin, "https://name:3000": in lower case, without the scheme's
// own port and without a slash at its end. Nothing for what no browser sends as an origin.
std::optional<std::string> ReadOrigin(std::string_view text);

class RequestGuard {
 public:
  // `address` is the address the host listens on; it may be named besides the loopback names.
  // `origins` are the other origins that are allowed, as ReadOrigin returns them.
  explicit RequestGuard(std::string address, std::vector<std::string> origins = {})
      : address_(std::move(address)), origins_(std::move(origins)) {}

  // The 403 (or 400 without a Host header) for a request that is not let in, otherwise nothing.
  // Needs the request's head only.
  std::optional<HttpResponse> Refuse(const HttpRequest& request) const;
  // Whether a page of that origin may send requests and read the responses.
  bool Allows(const std::string& origin) const;

 private:
  bool NamesThisMachine(std::string_view hostAndPort) const;

  const std::string address_;
  const std::vector<std::string> origins_;
};

}  // namespace Kest::Host
