#include "host/world/input/url_text.h"

#include <charconv>

namespace Kest::Host {

std::string DecodePercent(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned byte = 0;
    if (text[i] == '%' && i + 2 < text.size()) {
      const char* const digits = text.data() + i + 1;
      const auto [end, error] = std::from_chars(digits, digits + 2, byte, 16);
      if (error == std::errc() && end == digits + 2) {
        out += static_cast<char>(byte);
        i += 2;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

std::string EncodePercent(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string out;
  for (const char character : text) {
    if (kPlain.find(character) != std::string_view::npos) {
      out += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    out.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
  }
  return out;
}

std::vector<std::string> PathParts(std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const size_t slash = std::min(path.find('/'), path.size());
    if (slash > 0) parts.push_back(DecodePercent(path.substr(0, slash)));
    path.remove_prefix(std::min(slash + 1, path.size()));
  }
  return parts;
}

std::string_view UrlPath(std::string_view url) {
  return url.substr(0, url.find('?'));
}

std::optional<std::string> QueryArgument(std::string_view url, std::string_view name) {
  const size_t mark = url.find('?');
  if (mark == std::string_view::npos) return std::nullopt;
  std::string_view query = url.substr(mark + 1);
  while (!query.empty()) {
    const std::string_view pair = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(pair.size() + 1, query.size()));
    const size_t equals = std::min(pair.find('='), pair.size());
    if (DecodePercent(pair.substr(0, equals)) == name) {
      return DecodePercent(pair.substr(std::min(equals + 1, pair.size())));
    }
  }
  return std::nullopt;
}

}  // namespace Kest::Host
