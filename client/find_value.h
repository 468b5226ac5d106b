// Reads messages whose absent members may also be sent as null.
#pragma once

#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Client {

// The member, or null when `object` has none of that name, or a null one, or is no structure.
inline const BindingProperty* FindValue(const BindingProperty& object, std::string_view name) {
  const BindingProperty* member = object.FindMember(name);
  return member == nullptr || member->IsEmpty() ? nullptr : member;
}

}  // namespace Kest::Client
