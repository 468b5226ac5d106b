// Reads ids that are sent as decimal strings: reference ids and the names of tournament logos.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/maybe_type.h"

namespace Kest::Client::Loot {

// True when every character is one of "0123456789"; the empty string passes.
bool IsAllDigits(std::string_view text);

// The value of a string of digits; leading zeros are allowed. Failures: "invalid stoi argument" for
// an empty string or another character, "stoi argument out of range" beyond int32.
Maybe<int32_t> ReadDecimal32(std::string_view text);

}  // namespace Kest::Client::Loot
