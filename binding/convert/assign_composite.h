// Assigns a BindingProperty to a registered structure, and the entry checks of vectors and maps,
// whose loops are in native_accessor.h.
#pragma once

#include <string_view>

#include "binding/convert/conversion_context.h"
#include "binding/tree/binding_property.h"

namespace Kest {

// Visits the fields of `type` in their order: a member of the input that is present and not empty
// goes to the field's converter; one that is missing keeps the target's value, unless the field is
// required. Members without a field are ignored. `type` null: the structure is not registered.
// After a failure the target is partly assigned. Does nothing once `context` has failed.
void AssignStructure(ConversionContext& context, std::string_view path,
                     const BindingProperty& input, const TypeRecord* type, void* target);

// Fails `context` and returns false unless the input is of the kind a vector or a map needs.
bool ExpectCollection(ConversionContext& context, std::string_view path,
                      const BindingProperty& input);
bool ExpectMap(ConversionContext& context, std::string_view path, const BindingProperty& input);

}  // namespace Kest
