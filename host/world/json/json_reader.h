// Text to JsonValue. Strict JSON in valid UTF-8; a leading byte-order mark is skipped; a member
// name may stand once in an object; nesting ends at kMaxJsonDepth.
#pragma once

#include <string>
#include <string_view>

#include "base/maybe_type.h"
#include "host/world/json/json_value.h"

namespace Kest::Host {

// What is wrong with a text, and where.
struct JsonIssue {
  TextPosition position;
  std::string text;
};

MaybeType<JsonIssue, JsonValue> ReadJson(std::string_view text);

// "name:line:column: text", as compilers write it.
std::string DescribeIssue(std::string_view name, const JsonIssue& issue);

}  // namespace Kest::Host
