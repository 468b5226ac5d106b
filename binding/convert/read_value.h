// Writes a native value to a ValueWriter: bools, numbers, strings, blobs, enumerations, free-form
// trees and registered structures. A value the writer cannot take fails `context` with the writer's
// text. Does nothing once `context` has failed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "binding/convert/conversion_context.h"
#include "binding/tree/value_writer.h"

namespace Kest {

inline void CheckWritten(ConversionContext& context, bool written, const ValueWriter& writer) {
  if (!written) context.Fail(writer.ErrorMessage());
}

inline void ReadScalar(ConversionContext& context, bool value, ValueWriter& writer) {
  CheckWritten(context, writer.Bool(value), writer);
}
inline void ReadScalar(ConversionContext& context, int64_t value, ValueWriter& writer) {
  CheckWritten(context, writer.Signed(value), writer);
}
inline void ReadScalar(ConversionContext& context, uint64_t value, ValueWriter& writer) {
  CheckWritten(context, writer.Unsigned(value), writer);
}
inline void ReadScalar(ConversionContext& context, double value, ValueWriter& writer) {
  CheckWritten(context, writer.Float(value), writer);
}
inline void ReadScalar(ConversionContext& context, const std::string& value, ValueWriter& writer) {
  CheckWritten(context, writer.String(value), writer);
}
inline void ReadScalar(ConversionContext& context, const std::vector<uint8_t>& value,
                       ValueWriter& writer) {
  CheckWritten(context, writer.Blob(value), writer);
}
inline void ReadScalar(ConversionContext& context, const BindingProperty& value,
                       ValueWriter& writer) {
  CheckWritten(context, WriteTree(value, writer), writer);
}

// Narrower numbers.
template <Arithmetic T>
void ReadScalar(ConversionContext& context, T value, ValueWriter& writer) {
  if constexpr (std::is_floating_point_v<T>) {
    ReadScalar(context, static_cast<double>(value), writer);
  } else if constexpr (std::is_signed_v<T>) {
    ReadScalar(context, static_cast<int64_t>(value), writer);
  } else {
    ReadScalar(context, static_cast<uint64_t>(value), writer);
  }
}

// `type` null: the type is not registered, which fails.
void ReadEnumeration(ConversionContext& context, int32_t value, const TypeRecord* type,
                     ValueWriter& writer);
void ReadStructure(ConversionContext& context, const void* value, const TypeRecord* type,
                   ValueWriter& writer);

}  // namespace Kest
