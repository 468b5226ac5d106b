// The converter of one native type, as field records hold it. One constant object per type.
#pragma once

#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"
#include "binding/tree/value_writer.h"

namespace Kest {

// What a value is called in failure messages, by its argument or field, and its registered type.
// Together, so that all parameters of a call to a converter are passed in registers.
struct NamedType {
  std::string_view name;
  TypeIdentifier type;

  // An element of a vector or map has the name of the whole.
  NamedType Element() const { return {name, type.Element()}; }
};

class ValueAccessor {
 public:
  virtual ~ValueAccessor() = default;

  // Assigns `input` to the native value at `target`, named and typed as `as` says. Does nothing
  // once `context` has failed; after a failure the target may be partly assigned.
  virtual void Assign(ConversionContext& context, const NamedType& as, const BindingProperty& input,
                      void* target) const = 0;

  // Writes the native value at `value` to `writer`. Does nothing once `context` has failed.
  virtual void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
                    ValueWriter& writer) const = 0;
};

}  // namespace Kest
