// The worlds that are part of the program, by name.
#pragma once

#include <string_view>
#include <vector>

namespace Kest::Host {

// In the order in which they are shown.
std::vector<std::string_view> ShippedWorldNames();
// The text of a world file; empty when there is none of that name.
std::string_view ShippedWorld(std::string_view name);

// The JSON schema of world files.
std::string_view WorldSchema();

}  // namespace Kest::Host
