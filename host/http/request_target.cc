#include "host/http/request_target.h"

#include <charconv>

#include "host/http/header_text.h"

namespace Kest::Host {

RequestTarget RequestTarget::Split(std::string_view target) {
  const std::string_view path = TakeUpTo('?', &target);
  return {path, target};
}

std::optional<std::string_view> RequestTarget::Parameter(std::string_view name) const {
  for (std::string_view rest = query; !rest.empty();) {
    std::string_view value = TakeUpTo('&', &rest);
    if (TakeUpTo('=', &value) == name) return value;
  }
  return std::nullopt;
}

std::optional<std::string_view> RequestTarget::UnknownParameter(
    const std::function<bool(std::string_view name)>& isKnown) const {
  for (std::string_view rest = query; !rest.empty();) {
    std::string_view parameter = TakeUpTo('&', &rest);
    const std::string_view name = TakeUpTo('=', &parameter);
    if (!isKnown(name)) return name;
  }
  return std::nullopt;
}

std::optional<uint64_t> ParseNumber(std::string_view text) {
  uint64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace Kest::Host
