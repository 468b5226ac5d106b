// What a client prefers of the media types that a resource has.
#pragma once

#include <string_view>

namespace Kest::Host {

// Whether the Accept header names `type`, and with no lower quality than any `other` that it names.
// A wildcard names nothing: a client that takes everything prefers nothing.
bool Prefers(std::string_view accept, std::string_view type, std::string_view other);

}  // namespace Kest::Host
