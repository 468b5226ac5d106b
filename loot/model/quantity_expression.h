// The quantities of recipe slots and outputs arrive as small arithmetic texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Kest::Client::Loot {

// The value of whole numbers joined by + - * / and parentheses, blanks between them ignored. It is
// reckoned in 64 bits (quotients cut toward zero) and the low 32 bits of the result are answered.
// Nothing for any other text, a division by zero, or a step that leaves 64 bits. Nesting takes
// memory in proportion to the text, never stack.
std::optional<int32_t> EvaluateQuantity(std::string_view expression);

}  // namespace Kest::Client::Loot
