// Whether what is written is read by people.
#pragma once

#include <cstdio>

namespace Kest::Host {

// Whether `stream` is a terminal that shows colours, and its user has nothing against them
// (https://no-color.org).
bool ShowsColours(std::FILE* stream);

}  // namespace Kest::Host
