// The JSON library as the host uses it: members keep their order, and nothing throws but for want
// of memory. Headers that only pass JSON on as text include json_text.h instead.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace Kest::Host {

using Json = nlohmann::ordered_json;

// is_discarded() when `text` is not one JSON document. Nesting costs no stack.
inline Json ParseJson(std::string_view text) {
  return Json::parse(text, nullptr, false);
}

// Without whitespace; U+FFFD replaces what is not UTF-8.
// REQUIRES: `value` is not nested deeply; writing it recurses.
inline std::string WriteJson(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace Kest::Host
