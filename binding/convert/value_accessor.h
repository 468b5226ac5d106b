// The converter of one native type, as field records hold it. One constant object per type.
#pragma once

#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"
#include "binding/tree/value_writer.h"

namespace Kest {

class ValueAccessor {
 public:
  virtual ~ValueAccessor() = default;

  // Assigns `input` to the native value at `target`. `path` is the name of the argument or field in
  // failure messages; `type` is the value's registered type. Does nothing once `context` has
  // failed; after a failure the target may be partly assigned.
  virtual void Assign(ConversionContext& context, std::string_view path,
                      const BindingProperty& input, const TypeIdentifier& type,
                      void* target) const = 0;

  // Writes the native value at `value` to `writer`. Does nothing once `context` has failed.
  virtual void Read(ConversionContext& context, const void* value, const TypeIdentifier& type,
                    ValueWriter& writer) const = 0;
};

}  // namespace Kest
