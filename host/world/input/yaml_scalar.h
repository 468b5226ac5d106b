// The value of a plain YAML scalar by the core schema, of which JSON's tokens are a part: "yes" is
// a string, "0x10" and "010" are integers.
#pragma once

#include <optional>
#include <string_view>

#include "host/json/json.h"

namespace Kest::Host {

// Nothing for a number that no JSON value holds: an infinity, NaN, or one beyond a double.
std::optional<Json> ResolvePlainScalar(std::string_view text);

}  // namespace Kest::Host
