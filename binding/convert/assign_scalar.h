// Assigns a BindingProperty to a bool, number, string, blob, enumeration or free-form value.
//
// In all of them `path` names the argument or field in failure messages. They do nothing once
// `context` has failed; on failure they set `context` and leave `*target` alone. Strings are read
// as numbers whole: whitespace, a sign, then decimal, "0x" hexadecimal or "0" octal digits, in any
// locale of the process.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

template <typename T>
concept BoundNumber = Arithmetic<T> && !std::is_same_v<T, bool>;

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

// What AssignScalar does with most values, small enough to be inlined: a bool, an integer
// within the range of `*target`, a floating-point number, a string, a blob. False: AssignScalar has
// to look.
template <Arithmetic T>
bool TryAssignSimple(const BindingProperty& input, T* target) {
  if constexpr (std::is_same_v<T, bool>) {
    if (input.kind() != BindingKind::kBool) return false;
    *target = input.AsBool();
    return true;
  } else if constexpr (std::is_integral_v<T>) {
    if (input.kind() == BindingKind::kSigned && std::in_range<T>(input.AsSigned())) {
      *target = static_cast<T>(input.AsSigned());
      return true;
    }
    const bool fits =
        input.kind() == BindingKind::kUnsigned && std::in_range<T>(input.AsUnsigned());
    if (fits) *target = static_cast<T>(input.AsUnsigned());
    return fits;
  } else {
    constexpr uint64_t kExponent = 0x7FF0'0000'0000'0000;  // all of it set: infinite or NaN
    if (!std::is_same_v<T, double> || input.kind() != BindingKind::kFloat) return false;
    const double value = input.AsFloat();
    if ((std::bit_cast<uint64_t>(value) & kExponent) == kExponent) return false;
    *target = static_cast<T>(value);
    return true;
  }
}

inline bool TryAssignSimple(const BindingProperty& input, std::string* target) {
  if (input.kind() != BindingKind::kString) return false;
  target->assign(input.AsString());
  return true;
}
inline bool TryAssignSimple(const BindingProperty& input, std::vector<uint8_t>* target) {
  if (input.kind() != BindingKind::kBlob) return false;
  target->assign(input.AsBlob().begin(), input.AsBlob().end());
  return true;
}
inline bool TryAssignSimple(const BindingProperty&, BindingProperty*) {
  return false;
}

// The value must be one of the enumerators of `type`; null is an unregistered type.
void AssignEnumeration(ConversionContext&, std::string_view path, const BindingProperty&,
                       const TypeRecord* type, int32_t* target);

}  // namespace Kest
