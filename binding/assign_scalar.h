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
#include <vector>

#include "binding/binding_property.h"
#include "binding/conversion_context.h"

namespace Kest {

void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&, bool* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  int8_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  uint8_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  int16_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  uint16_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  int32_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  uint32_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  int64_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  uint64_t* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&, float* target);
void AssignScalar(ConversionContext&, std::string_view path, const BindingProperty&,
                  double* target);
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
