#include "host/http/request_guard.h"

#include <algorithm>

#include "base/ascii.h"
#include "host/http/entity_tag.h"
#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kLoopbackNames[] = {"localhost", "127.0.0.1", "[::1]"};

// "name:port" without its port; unchanged when what follows the colon is no port.
std::string_view WithoutPort(std::string_view hostAndPort) {
  const size_t colon = hostAndPort.rfind(':');
  if (colon == std::string_view::npos) return hostAndPort;
  const std::string_view port = hostAndPort.substr(colon + 1);
  const bool isPort =
      !port.empty() && port.size() <= 5 && std::all_of(port.begin(), port.end(), IsDigit);
  return isPort ? hostAndPort.substr(0, colon) : hostAndPort;
}

bool IsOfHost(char c) {
  constexpr std::string_view kMarks = "-._[]:";
  return IsDigit(c) || (c >= 'a' && c <= 'z') || kMarks.find(c) != kMarks.npos;
}

bool IsScheme(std::string_view text) {
  return !text.empty() && text.front() >= 'a' && text.front() <= 'z' &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return IsDigit(c) || (c >= 'a' && c <= 'z') || c == '+' || c == '-' || c == '.';
         });
}

}  // namespace

std::optional<std::string> ReadOrigin(std::string_view text) {
  constexpr std::string_view kMark = "://";
  std::string origin(text);
  std::transform(origin.begin(), origin.end(), origin.begin(), ToLower);
  if (origin.ends_with('/')) origin.pop_back();
  const size_t mark = origin.find(kMark);
  if (mark == std::string::npos) return std::nullopt;
  const std::string scheme = origin.substr(0, mark);
  const std::string_view rest = std::string_view(origin).substr(mark + kMark.size());
  const std::string_view name = WithoutPort(rest);
  const bool hasColon =
      name.find(':') != name.npos && !name.starts_with('[');  // a port that is none
  if (!IsScheme(scheme) || name.empty() || hasColon ||
      !std::all_of(name.begin(), name.end(), IsOfHost)) {
    return std::nullopt;
  }
  const std::string_view port = rest.substr(name.size());
  const bool isOwn = (scheme == "http" && port == ":80") || (scheme == "https" && port == ":443");
  if (isOwn) origin.resize(origin.size() - port.size());
  return origin;
}

bool RequestGuard::NamesThisMachine(std::string_view hostAndPort) const {
  const std::string_view name = WithoutPort(hostAndPort);
  const auto isName = [name](std::string_view other) { return EqualIgnoringCase(name, other); };
  if (std::any_of(std::begin(kLoopbackNames), std::end(kLoopbackNames), isName)) return true;
  const bool isIpv6 = address_.find(':') != std::string::npos;
  return isName(isIpv6 ? "[" + address_ + "]" : address_);
}

std::optional<HttpResponse> RequestGuard::Refuse(const HttpRequest& request) const {
  if (request.host.empty()) return ProblemResponse(400, "A Host header is required.");
  if (!NamesThisMachine(request.host)) {
    return ProblemResponse(403, "The Host header must name this machine: localhost or 127.0.0.1.");
  }
  if (request.origin.empty() || OnlyReads(request.method) || Allows(request.origin)) {
    return std::nullopt;
  }
  return ProblemResponse(403,
                         "Pages of another origin may not change anything here; "
                         "--allow-origin lets in more.");
}

bool RequestGuard::Allows(const std::string& origin) const {
  constexpr std::string_view kSchemes[] = {"http://", "https://"};
  for (const std::string_view scheme : kSchemes) {
    if (origin.starts_with(scheme) &&
        NamesThisMachine(std::string_view(origin).substr(scheme.size()))) {
      return true;
    }
  }
  return std::any_of(origins_.begin(), origins_.end(), [&origin](const std::string& allowed) {
    return EqualIgnoringCase(origin, allowed);
  });
}

}  // namespace Kest::Host
