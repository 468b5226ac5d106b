// Assigns a BindingProperty to a bool, number, text, blob, enumeration or free-form value.
//
// In all of them `path` names the argument or field in failure texts. They do nothing once
// `context` has failed; on failure they set `context` and leave `*target` alone. Texts are read as
// numbers whole: blanks before, a sign, then decimal, "0x" hexadecimal or "0" octal digits,
// whatever the process's locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "binding/binding_property.h"
#include "binding/conversion_context.h"

namespace Kest {

template <typename T>
concept BoundNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;

void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&, bool* target);
// int8_t to uint64_t, float and double.
template <BoundNumber T>
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&, T* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  std::string* target);
// A blob, or the bytes of a text.
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  std::vector<uint8_t>* target);
// Any kind, copied.
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  BindingProperty* target);

// The value must be one of the enumerators of `type`; null is an unregistered type.
void AssignEnumeration(ConversionContext&, std::string_view path, const BindingProperty&,
                       const TypeRecord* type, int32_t* target);

}  // namespace Kest
