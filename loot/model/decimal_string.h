// Reads ids that travel as decimal text: reference ids and the names of tournament logos.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/maybe_type.h"

namespace Kest::Client::Loot {

// True when every character is one of "0123456789"; the empty text passes.
bool IsAllDigits(std::string_view text);

// The number of a text of digits only; leading zeros are allowed. Failures: "invalid stoi argument"
// for an empty text or another character, "stoi argument out of range" beyond int32.
Maybe<int32_t> ReadDecimal32(std::string_view text);

}  // namespace Kest::Client::Loot
