// The quantities of recipe slots and outputs are sent as small arithmetic expressions.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kest::Client::Loot {

// The value of integers joined by + - * / and parentheses, spaces between them ignored. It is
// evaluated in 64 bits (quotients truncated toward zero); the low 32 bits are returned. Nothing for
// any other string, a division by zero, or 64-bit overflow. Nesting takes memory, never stack.
std::optional<int32_t> EvaluateQuantity(std::string_view expression);

}  // namespace Kest::Client::Loot
