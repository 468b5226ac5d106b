// Tests a value against the schema of a control's body.
#pragma once

#include <optional>
#include <string>

#include "host/json/json.h"

namespace Kest::Host {

struct SchemaFault {
  const Json* part;  // of the value
  std::string message;
};

// The first part of `value` that does not fit the shorthand. Of a "oneOf" the value's type chooses;
// where it fits several, nothing is tested.
std::optional<SchemaFault> FindSchemaFault(const Json& value, const Json& shorthand);

}  // namespace Kest::Host
