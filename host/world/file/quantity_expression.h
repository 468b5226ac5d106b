// Quantities of recipes as the service writes them: a whole number, or "+", "-", "*", "/" and
// parentheses over whole numbers ("2 * (3 + 1)"). Division cuts toward zero.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kest::Host {

// The value; nothing for a text of another form, a division by zero or a value beyond 64 bits.
std::optional<int64_t> EvaluateQuantity(std::string_view expression);

}  // namespace Kest::Host
