// A second opinion on MessagePack: the format's own table, read with plain recursion.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Fuzz {

struct PlainReading {
  std::optional<BindingProperty> tree;  // none: the bytes begin with no value
  std::string failure;                  // why; empty when they nest too deep for recursion
};

PlainReading ReadPlainMessagePack(std::string_view bytes);

}  // namespace Kest::Fuzz
