// Taking URLs apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kest::Host {

// Decodes %XX; a broken escape stays as it is.
std::string DecodePercent(std::string_view text);
// All but letters, digits and "-._~" as %XX, so that it is one part of a path.
std::string EncodePercent(std::string_view text);
// The parts of a path, decoded; empty parts are left out ("/a//b" has two).
std::vector<std::string> PathParts(std::string_view path);
// The decoded value of a query argument, or nothing.
std::optional<std::string> QueryArgument(std::string_view url, std::string_view name);
// What precedes "?".
std::string_view UrlPath(std::string_view url);

}  // namespace Kest::Host
