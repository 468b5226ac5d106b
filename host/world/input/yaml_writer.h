// Writes a value as YAML for people: blocks, and quotes only where a plain scalar would be read as
// something else. ReadYamlTree reads it back as the same value.
#pragma once

#include <string>

#include "host/json/json.h"

namespace Kest::Host {

std::string WriteYaml(const Json& value);

}  // namespace Kest::Host
