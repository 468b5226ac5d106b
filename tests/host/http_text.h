// Requests as golden cases hold them, and what of a response is compared.
#pragma once

#include <regex>
#include <string>

namespace Kest::Host {

// The bytes of a request from its lines; "{1000}" stands for a thousand times "x".
inline std::string RequestOf(std::string lines) {
  for (std::smatch match; std::regex_search(lines, match, std::regex(R"(\{(\d+)\})"));) {
    lines.replace(match.position(), match.length(), std::stoul(match[1]), 'x');
  }
  return std::regex_replace(lines, std::regex("\n"), "\r\n");
}

// The status lines, the headers that differ, and the end of the body.
inline std::string Outline(const std::string& response) {
  std::string outline;
  const std::regex telling("(HTTP/|Allow:|ETag:|Vary:|Content-Type:|Access-Control-)[^\r]*\r\n");
  for (std::sregex_iterator line(response.begin(), response.end(), telling), end; line != end;
       ++line) {
    outline += line->str().substr(0, line->length() - 2) + "; ";
  }
  const std::string body = response.substr(response.rfind("\r\n\r\n") + 4);
  return outline + (body.size() > 160 ? "... " + body.substr(body.size() - 60) : body);
}

}  // namespace Kest::Host
