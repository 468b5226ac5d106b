#include "host/json/json_text.h"

#include "host/json/json.h"

namespace Kest::Host {

bool IsJson(std::string_view text) {
  // The library skips a byte-order mark and stops at a NUL.
  return !text.starts_with("\xEF\xBB\xBF") && text.find('\0') == text.npos && Json::accept(text);
}

bool IsDeeperThan(std::string_view json, int levels) {
  int level = 0;
  bool inString = false;
  for (size_t i = 0; i < json.size() && level <= levels; ++i) {
    const char c = json[i];
    if (c == '"') inString = !inString;
    if (inString && c == '\\') ++i;
    if (inString) continue;
    if (c == '[' || c == '{') ++level;
    if (c == ']' || c == '}') --level;
  }
  return level > levels;
}

std::string JsonString(std::string_view text) {
  return WriteJson(Json(text));
}

std::optional<std::string> ReadJsonString(std::string_view json) {
  Json value = ParseJson(json);
  if (!value.is_string()) return std::nullopt;
  return std::move(value.get_ref<std::string&>());
}

}  // namespace Kest::Host
