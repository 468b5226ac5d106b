// Conversion between native values and binding values, by native type.
#pragma once

#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/convert/native_accessor.h"
#include "binding/convert/native_type.h"
#include "binding/tree/binding_property.h"
#include "binding/tree/tree_builder.h"
#include "binding/tree/value_writer.h"

namespace Kest {

// Assigns `input` to `*target`. `path` names the argument, or "<result>", "<value>", in failure
// texts; members are named by their field. On failure `context` says why and `*target` may be
// partly assigned. Members the input lacks keep their values: pass a fresh target for defaults.
template <typename T>
void Assign(ConversionContext& context, std::string_view path, const BindingProperty& input,
            T* target) {
  NativeAccessor<T>().Assign(context, {path, IdentifyType<T>(context.registry())}, input, target);
}

// Writes the native value to `writer`.
template <typename T>
void Read(ConversionContext& context, const T& value, ValueWriter& writer) {
  NativeAccessor<T>().Read(context, &value, IdentifyType<T>(context.registry()), writer);
}

// The native value as a tree; empty when `context` failed.
template <typename T>
BindingProperty ToProperty(ConversionContext& context, const T& value) {
  TreeBuilder builder;
  Read(context, value, builder);
  return context.Ok() ? builder.Take() : BindingProperty();
}

}  // namespace Kest
