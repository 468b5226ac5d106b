// Quantities of recipes as the service writes them: an integer, or "+", "-", "*", "/" and
// parentheses over integers ("2 * (3 + 1)"). Division truncates toward zero.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kest::Host {

// The value; nothing for a string of another form, a division by zero or a value beyond 64 bits.
std::optional<int64_t> EvaluateQuantity(std::string_view expression);

}  // namespace Kest::Host
