#include "host/url/request_target.h"

#include <algorithm>
#include <charconv>

#include "host/url/url_text.h"

namespace Kest::Host {

RequestTarget RequestTarget::Split(std::string_view target) {
  const std::string_view path = TakeUpTo('?', &target);
  return {path, target};
}

std::optional<std::string> RequestTarget::Parameter(std::string_view name) const {
  for (std::string_view rest = query; !rest.empty();) {
    std::string_view value = TakeUpTo('&', &rest);
    if (DecodePercent(TakeUpTo('=', &value)) == name) return DecodePercent(value);
  }
  return std::nullopt;
}

std::vector<std::pair<std::string, std::string>> RequestTarget::Parameters() const {
  std::vector<std::pair<std::string, std::string>> parameters;
  for (std::string_view rest = query; !rest.empty();) {
    std::string_view value = TakeUpTo('&', &rest);
    std::string name = DecodePercent(TakeUpTo('=', &value));
    parameters.emplace_back(std::move(name), DecodePercent(value));
  }
  return parameters;
}

std::vector<std::string> PathParts(std::string_view path) {
  std::vector<std::string> parts;
  while (path.starts_with('/')) {
    path.remove_prefix(1);
    const size_t end = std::min(path.find('/'), path.size());
    parts.push_back(DecodePercent(path.substr(0, end)));
    path.remove_prefix(end);
  }
  return parts;
}

std::optional<uint64_t> ParseNumber(std::string_view text) {
  uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace Kest::Host
