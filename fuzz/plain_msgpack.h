// A second opinion on MessagePack: the format's own table, read with plain recursion.
#pragma once

#include <optional>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Fuzz {

// The value that `bytes` begin with; none when they are no value, or nest too deep for recursion.
std::optional<BindingProperty> ReadPlainMessagePack(std::string_view bytes);

}  // namespace Kest::Fuzz
