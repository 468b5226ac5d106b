// JSON as text, for those that only pass it on.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kest::Host {

// Whether `text` is one JSON document: valid UTF-8 without a byte-order mark, nothing after it.
// Nesting costs no stack.
bool IsJson(std::string_view text);

// Whether the document has more levels of arrays and objects. REQUIRES: it is JSON, or will be
// refused as none.
bool IsDeeperThan(std::string_view json, int levels);

// `text` as a JSON string with its quotes; U+FFFD replaces what is not UTF-8.
std::string JsonString(std::string_view text);

// The string that `json` is, or nothing when it is any other value.
std::optional<std::string> ReadJsonString(std::string_view json);

}  // namespace Kest::Host
